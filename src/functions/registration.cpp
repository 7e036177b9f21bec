#include "functions/registration.h"

#include "functions/elementwise/elementwise_entry.h"
#include "functions/files/files_entry.h"
#include "functions/rank/rank_entry.h"
#include "functions/reciprocal/reciprocal_entry.h"
#include "functions/reciprocal/window_entry.h"
#include "functions/smoothing/smoothing_entry.h"
#include "functions/statistics/statistics_entry.h"
#include "functions/system/system_entry.h"
#include "functions/transpose/transpose_entry.h"

namespace qorv::functions {

void register_functions(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prefix)
{
    const dm::script_functions in_order[] = {
        utility_functions,    file_functions,    elementwise_functions,    smoothing_functions, rank_functions,
        statistics_functions, weight_functions,  center_of_mass_functions, name_functions,      window_functions,
        mask_functions,       process_functions, transpose_functions,
    };
    for (const dm::script_functions& functions : in_order)
        for (const auto& [returns, signature, add] : functions) add(plug_in, returns + prefix + signature);
}

}  // namespace qorv::functions
