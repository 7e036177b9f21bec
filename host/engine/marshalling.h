#pragma once

#include "host/engine/handle_table.h"
#include "host/objects/function.h"

/// Conversion of values between scripts and the plain form of the contract.
namespace zentrix::host {

/// The type of an output parameter's cell.
prototype_type cell_type_of(const prototype_type& output);

/// Zero, an empty text or a null reference: the start value of a cell that has no value of the type.
script_value default_value(const prototype_type& type);

/// A plain value of the library in a script's form. Reference counts do not change.
/// passed   the value
/// type     the prototype's type; not an output parameter
/// Throws   script_error, and records a violation, when the value is of another kind, does not name a live object, or
///          is a null string
script_value from_library(handle_table& handles, journal& records, const host_value& passed,
                          const prototype_type& type);

/// A text as a string object for the library.
/// Throws  script_error when the text contains a null character, which would end it for the library's C strings
object_ref string_for_library(const std::string& text);

/// A script's value in plain form. An object is counted for the library.
/// Throws  script_error as convert and string_for_library
host_value counted_for_library(handle_table& handles, const script_value& value, const prototype_type& type);

/// Carries out a call by the library: checks the plain arguments against the prototype, calls, and stores the results.
/// passed   the plain arguments
/// result   place for the result; null: it is not needed
/// Throws   script_error; outputs and result are then unchanged
void call_for_library(function& callee, handle_table& handles, journal& records, std::span<const host_value> passed,
                      host_value* result);

}  // namespace zentrix::host
