#include "functions/system/system_entry.h"

#include <omp.h>

#include <algorithm>

#include <boost/numeric/conversion/cast.hpp>

#include "entry/timing_scope.h"
#include "functions/system/pad_size.h"
#include "functions/system/process.h"
#include "functions/system/special_directory.h"
#include "image/element_type.h"

namespace qorv::functions {
namespace {

/// The parallel runtime ends the process when it cannot start as many threads as requested.
constexpr std::int32_t most_threads = 1024;

std::int32_t PadSizeDM(std::int32_t n)
{
    // A script's negative number stands for the unsigned number of the same bits, in both directions.
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
    return omp_get_num_threads();  // size of the current team: 1 outside a parallel region
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

constexpr dm::script_function rows[] = {
    {"long ", "PadSize(long n)", binding::add_function<PadSizeDM>},
    {"long ", "ToDMDataType(long eType)", binding::add_function<ToDMDataTypeDM>},
    {"void ", "SetNumThreads(long n)", binding::add_function<SetNumThreadsDM>},
    {"long ", "GetNumThreads()", binding::add_function<GetNumThreadsDM>},
    {"long ", "GetMaxThreads()", binding::add_function<GetMaxThreadsDM>},
    {"dm_string ", "GetSpecialDirectory(long eType, long doCreate)", binding::add_function<GetSpecialDirectoryDM>},
};

constexpr dm::script_function process_rows[] = {
    {"void ", "Exec(dm_string strCommandLine)", binding::add_function<ExecDM>},
    {"void ", "ExecWait(dm_string strCommandLine)", binding::add_function<ExecWaitDM>},
    {"void ", "ShellExec(dm_string strCommandLine)", binding::add_function<ShellExecDM>},
};

}  // namespace

const dm::script_functions utility_functions{rows};
const dm::script_functions process_functions{process_rows};

}  // namespace qorv::functions
