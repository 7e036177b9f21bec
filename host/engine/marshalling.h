#pragma once

#include "host/engine/handle_table.h"
#include "host/objects/function.h"

namespace zentrix::host {

/// Values on their way between scripts and the contract's plain form.

/// The type of an output parameter's cell.
prototype_type cell_type_of(const prototype_type& output);

/// What the library passed as a value of `type` (no output): objects are looked up, nothing is counted.
/// Throws  script_error (and records a violation) when it is of another kind, names no live object, or is a null string
script_value from_library(handle_table& handles, journal& told, const host_value& passed, const prototype_type& type);

/// A value in plain form; `value` has to fit `type` (see convert). Objects are counted for the library.
host_value counted_for_library(handle_table& handles, const script_value& value, const prototype_type& type);

/// Zero, an empty text or a null reference, where a cell holds nothing that the type could take.
script_value nothing_of(const prototype_type& type);

/// A call by the library: checks the plain arguments against the prototype, calls, stores outputs and result (which may
/// be null). On failure outputs stay as they were.
/// Throws  script_error
void call_for_library(function& callee, handle_table& handles, journal& told, std::span<const host_value> passed,
                      host_value* result);

/// A script function that the library registered.
function_ref make_native_function(prototype signature, host_native native, void* context, handle_table& handles,
                                  journal& told);

}  // namespace zentrix::host
