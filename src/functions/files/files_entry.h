#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "binding/values.h"

/// Script functions of the library: raw files, file selection and numbered names. docs/script-reference.md tells what
/// each does.
namespace qorv::functions {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

tag_group_ref SelectImageFilesDM(output<std::string> path, const std::string& strFilter, output<std::int32_t> nW,
                                 output<std::int32_t> nH, output<std::int32_t> eType);
tag_group_ref SelectImageFilesOwnedDM(output<std::string> path, const std::string& strFilter, output<std::int32_t> nW,
                                      output<std::int32_t> nH, output<std::int32_t> eType,
                                      const std::string& cOwnerName);
image_ref OpenImageDM(const std::string& path, std::int32_t nW, std::int32_t nH, std::int32_t nD, std::int32_t eType);
void SortNumberedNameDM(tag_group_ref tFiles);

}  // namespace qorv::functions
