#pragma once

#include "host/objects/prototype.h"
#include "host/objects/value.h"

#include <optional>

namespace zentrix::host {

/// How far a value is from a prototype's type: 0 for the same kind, more for each loss; nothing when a script may not
/// pass it at all. Ranges are not looked at.
///   integer types        integer 0, real 3
///   float, double        real 0, integer 1
///   complex              complex 0, real 1, integer 2
///   string               text 0
///   objects              an object of that kind 0, null 1; a ComplexImagePtr prefers complex pictures
///   output parameters    an output parameter 0, null (no such output wanted) 1
std::optional<int> conversion_cost(const script_value& value, const prototype_type& type);

/// Converts to what a function of that type gets: std::int64_t for integer types and truth values, double for float and
/// double, std::complex<double>, std::string, object_ref, cell_ref, void*. Numbers are checked: a real number for an
/// integer type loses its fraction towards zero; one that does not fit fails with
/// "bad numeric conversion: positive overflow" or "bad numeric conversion: negative overflow", one that is no number
/// with "bad numeric conversion: overflow". A finite number beyond float's range fails alike; infinities and
/// not-a-number stay what they are in real types. Float values are rounded to float. Any number but 0 is true.
/// Throws  script_error: the texts above, or naming the value and the type where the kinds do not fit
script_value convert(const script_value& value, const prototype_type& type);

}  // namespace zentrix::host
