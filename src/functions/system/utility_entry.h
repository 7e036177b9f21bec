#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: sizes, threads, folders and processes. docs/script-reference.md tells what each
/// does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

std::int32_t PadSizeDM(std::int32_t n);
std::int32_t ToDMDataTypeDM(std::int32_t eType);
void SetNumThreadsDM(std::int32_t n);
std::int32_t GetNumThreadsDM();
std::int32_t GetMaxThreadsDM();
std::string GetSpecialDirectoryDM(std::int32_t eType, std::int32_t doCreate);
void ExecDM(const std::string& strCommandLine);
void ExecWaitDM(const std::string& strCommandLine);
void ShellExecDM(const std::string& strCommandLine);

}  // namespace qorv::functions
