#include "functions/system/utility_entry.h"

#include <omp.h>

#include <algorithm>

#include <boost/numeric/conversion/cast.hpp>

#include "entry/timing_scope.h"
#include "functions/system/pad_size.h"
#include "functions/system/process.h"
#include "image/element_type.h"

namespace qorv::functions {
namespace {

/// Far above any machine's cores; the parallel runtime ends the process when it cannot start as many as it was told.
constexpr std::int32_t most_threads = 1024;

}  // namespace

std::int32_t PadSizeDM(std::int32_t n)
{
    // Sizes from 2^31 on come back as the script's negative numbers with the same bits, as they went in.
    return static_cast<std::int32_t>(boost::numeric_cast<std::uint32_t>(pad_size(static_cast<std::uint32_t>(n))));
}

std::int32_t ToDMDataTypeDM(std::int32_t eType) { return static_cast<std::int32_t>(dm::ToDMDataType(eType)); }

void SetNumThreadsDM(std::int32_t n)
{
    const dm::timing_scope timing{"SetNumThreadsDM"};
    omp_set_num_threads(std::clamp(n, 1, most_threads));
}

std::int32_t GetNumThreadsDM()
{
    const dm::timing_scope timing{"GetNumThreadsDM"};
    return omp_get_num_threads();  // of the present team: 1 outside a parallel region
}

std::int32_t GetMaxThreadsDM()
{
    const dm::timing_scope timing{"GetMaxThreadsDM"};
    return omp_get_max_threads();
}

std::string GetSpecialDirectoryDM(std::int32_t eType, std::int32_t doCreate)
{
    return platform::special_directory(eType, doCreate != 0);
}

void ExecDM(const std::string& strCommandLine) { platform::start(strCommandLine); }

void ExecWaitDM(const std::string& strCommandLine) { platform::start_and_wait(strCommandLine); }

void ShellExecDM(const std::string& strCommandLine)
{
    const dm::timing_scope timing{"ShellExecDM"};
    platform::open(strCommandLine);
}

}  // namespace qorv::functions
