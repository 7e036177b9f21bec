#include "host/objects/conversion.h"

#include "host/objects/image.h"

#include <boost/numeric/conversion/cast.hpp>
#include <cmath>

namespace zentrix::host {

namespace {

bool is_integer(host_kind kind) { return kind == HOST_INT32 || kind == HOST_UINT32 || kind == HOST_UINT64; }

std::optional<int> number_cost(const script_value& value, int integer, int real, std::optional<int> complex)
{
    if (std::holds_alternative<std::int64_t>(value)) return integer;
    if (std::holds_alternative<double>(value)) return real;
    if (std::holds_alternative<std::complex<double>>(value)) return complex;
    return std::nullopt;
}

std::optional<int> object_cost(const script_value& value, const prototype_type& type)
{
    if (is_null(value)) return std::holds_alternative<cell_ref>(value) ? std::nullopt : std::optional{1};
    const auto* held = std::get_if<object_ref>(&value);
    if (!held || (*held)->kind() != static_cast<object_kind>(type.kind)) return std::nullopt;
    if (const auto* picture = dynamic_cast<const image*>(held->get()))
        return (picture->type().meaning == element_class::complex) == type.is_complex_image() ? 0 : 1;
    return 0;
}

template <class T, class From>
T checked(From number)
{
    try {
        if constexpr (std::is_floating_point_v<From>)
            if (std::isnan(number)) throw boost::numeric::bad_numeric_cast{};  // numeric_cast lets it pass
        return boost::numeric_cast<T>(number);
    } catch (const boost::numeric::bad_numeric_cast& refused) {
        throw script_error{refused.what()};
    }
}

template <class T>
std::int64_t to_integer(const script_value& value)
{
    if (const auto* real = std::get_if<double>(&value)) return checked<std::int64_t>(checked<T>(*real));
    return checked<std::int64_t>(checked<T>(std::get<std::int64_t>(value)));
}

double to_double(const script_value& value)
{
    if (const auto* real = std::get_if<double>(&value)) return *real;
    return static_cast<double>(std::get<std::int64_t>(value));
}

double to_float(const script_value& value)
{
    const double number = to_double(value);
    return std::isfinite(number) ? checked<float>(number) : number;
}

bool is_true(const script_value& value) { return to_double(value) != 0; }

std::complex<double> to_complex(const script_value& value)
{
    if (const auto* number = std::get_if<std::complex<double>>(&value)) return *number;
    return to_double(value);
}

script_value as_object(const script_value& value)
{
    if (is_null(value)) return object_ref{};
    return value;
}

}  // namespace

std::optional<int> conversion_cost(const script_value& value, const prototype_type& type)
{
    if (is_integer(type.kind)) return number_cost(value, 0, 3, {});
    if (is_object(type.kind)) return object_cost(value, type);
    switch (type.kind) {
        case HOST_FLOAT32:
        case HOST_FLOAT64: return number_cost(value, 1, 0, {});
        case HOST_COMPLEX: return number_cost(value, 2, 1, 0);
        case HOST_STRING: return std::holds_alternative<std::string>(value) ? std::optional{0} : std::nullopt;
        case HOST_POINTER: return std::holds_alternative<void*>(value) ? std::optional{0} : std::nullopt;
        case HOST_OUTPUT:
            if (is_null(value)) return 1;
            return std::holds_alternative<cell_ref>(value) ? std::optional{0} : std::nullopt;
        default: return is_null(value) ? std::optional{0} : std::nullopt;
    }
}

script_value convert(const script_value& value, const prototype_type& type)
{
    if (!conversion_cost(value, type)) {
        throw script_error{describe(value) + " cannot be passed as " + name_of(type.kind) + "."};
    }
    if (type.is_boolean() && type.kind == HOST_INT32) return std::int64_t{is_true(value)};
    switch (type.kind) {
        case HOST_INT32:
            return type.word == "short" ? to_integer<std::int16_t>(value) : to_integer<std::int32_t>(value);
        case HOST_UINT32: return to_integer<std::uint32_t>(value);
        case HOST_UINT64: return to_integer<std::uint64_t>(value);
        case HOST_FLOAT32: return to_float(value);
        case HOST_FLOAT64: return to_double(value);
        case HOST_COMPLEX: return to_complex(value);
        case HOST_OUTPUT:
            if (is_null(value)) return cell_ref{};
            return value;
        default: return is_object(type.kind) ? as_object(value) : value;
    }
}

}  // namespace zentrix::host
