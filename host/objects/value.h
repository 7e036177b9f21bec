#pragma once

#include "host/objects/object.h"

#include <complex>
#include <cstdint>
#include <stdexcept>
#include <variant>
#include <vector>

namespace zentrix::host {

struct cell;
/// An output parameter. The function sees the cell's value and may replace it; the caller keeps the cell.
using cell_ref = std::shared_ptr<cell>;

/// A value of a script: nothing (a null reference, or the result of a void function), an integer, a real number, a
/// complex number, a text, an object, an output parameter, or a pointer (used by host functions for memory only). Truth
/// values are the integers 0 and 1. A null object_ref is equivalent to nothing.
using script_value =
    std::variant<std::monostate, std::int64_t, double, std::complex<double>, std::string, object_ref, cell_ref, void*>;

struct cell
{
    script_value value;
};

/// A new output parameter holding `value`.
inline cell_ref make_cell(script_value value = {}) { return std::make_shared<cell>(cell{std::move(value)}); }

/// An error that stops the script. The user reads its text.
class script_error : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

/// True for nothing, a null object and a null output.
bool is_null(const script_value& value) noexcept;

/// The object in `value` if it is one of class T, otherwise null.
template <class T>
std::shared_ptr<T> object_in(const script_value& value)
{
    const auto* held = std::get_if<object_ref>(&value);
    return held ? std::dynamic_pointer_cast<T>(*held) : nullptr;
}

/// For messages: "null", "integer 3", "real number 0.5", "text "abc"", "image ...", "output parameter".
std::string describe(const script_value& value);

}  // namespace zentrix::host
