#pragma once

#include "host/objects/prototype.h"
#include "host/objects/value.h"

#include <optional>

namespace zentrix::host {

/// The distance of a value from a prototype's type: 0 for the same kind, larger for a greater loss, empty when a script
/// may not pass the value. Ranges are not checked.
///   integer types        integer 0, real 3
///   float, double        real 0, integer 1
///   complex              complex 0, real 1, integer 2
///   string               text 0
///   objects              an object of that kind 0, null 1; for images also 1 when a ComplexImagePtr gets one that is
///                        not complex, or another image type gets a complex one
///   output parameters    an output parameter 0, null (the output is not needed) 1
std::optional<int> conversion_cost(const script_value& value, const prototype_type& type);

/// Converts a value to the form that a function receives for the type: std::int64_t for integer types and truth values,
/// double for float and double, std::complex<double>, std::string, object_ref, cell_ref or void*.
///   integer types   a real number loses its fraction; a number out of range is an error
///   truth values    1 for any number other than 0
///   float           rounded to float; a finite number out of range is an error, infinities and NaN pass
/// Throws  script_error "bad numeric conversion: positive overflow" or "bad numeric conversion: negative overflow" for
///         a number out of range, "bad numeric conversion: overflow" for NaN as an integer; a text that names the value
///         and the type when the kinds do not fit
script_value convert(const script_value& value, const prototype_type& type);

}  // namespace zentrix::host
