#pragma once

#include "host/engine/handle_table.h"
#include "host/objects/function.h"

namespace zentrix::host {

/// A script function that the library registered. Calling it converts arguments, outputs and result, and turns a
/// failure into script_error with the text of the library's throwable.
/// native, context  as in the contract's register_function
/// handles, records must outlive the function
function_ref make_native_function(prototype signature, host_native native, void* context, handle_table& handles,
                                  journal& records);

}  // namespace zentrix::host
