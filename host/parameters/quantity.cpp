#include "host/parameters/quantity.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "host/objects/calibration.h"
#include "host/parameters/json_file.h"

namespace zentrix::host {

namespace {

struct named_size
{
    std::string_view name;
    double size;
};

constexpr double mrad_per_degree = 1e3 * std::numbers::pi / 180;

constexpr named_size angles[] = {{"mrad", 1},
                                 {"rad", 1e3},
                                 {"radian", 1e3},
                                 {"urad", 1e-3},
                                 {"deg", mrad_per_degree},
                                 {"degree", mrad_per_degree},
                                 {"degrees", mrad_per_degree},
                                 {"\u00b0", mrad_per_degree}};
constexpr named_size voltages[] = {{"kV", 1}, {"V", 1e-3}, {"MV", 1e3}, {"keV", 1}, {"eV", 1e-3}, {"MeV", 1e3}};

template <std::size_t n>
std::optional<double> size_in(const named_size (&units)[n], std::string_view unit)
{
    const auto* const found = std::find_if(units, units + n, [&](const named_size& one) { return one.name == unit; });
    return found == units + n ? std::nullopt : std::optional{found->size};
}

const char* examples_of(dimension what)
{
    return what == dimension::length ? "a length such as nm" : what == dimension::angle ? "an angle" : "a voltage";
}

}  // namespace

std::optional<double> unit_size(dimension what, std::string_view unit)
{
    if (what == dimension::angle) return size_in(angles, unit);
    if (what == dimension::voltage) return size_in(voltages, unit);
    const double nanometres = nanometres_in(std::string{unit});
    return nanometres > 0 ? std::optional{nanometres} : std::nullopt;
}

void refuse(const std::string& text) { throw std::invalid_argument{text}; }

double converted(const std::string& entry, double value, dimension what, std::string_view from, std::string_view to)
{
    const auto size = unit_size(what, from);
    if (!size) refuse(entry + ": \"" + shown_name(std::string{from}) + "\" is not the unit of " + examples_of(what));
    // Ratios above 1 are whole powers of ten for most units. Dividing by them is exact where multiplying by 0.1 is not.
    const double target = unit_size(what, to).value();
    const double result = *size >= target ? value * (*size / target) : value / (target / *size);
    if (!std::isfinite(result)) refuse(entry + " is too large");
    return result;
}

double finite_number(const std::string& entry, const nlohmann::ordered_json& value, std::string_view expected)
{
    if (!value.is_number() || !std::isfinite(value.get<double>()))
        refuse(entry + " is " + std::string{expected} + ", not " + shown(value));
    return value.get<double>();
}

std::string text_of(const std::string& entry, const nlohmann::ordered_json& value)
{
    if (!value.is_string()) refuse(entry + " is a text, not " + shown(value));
    return value.get<std::string>();
}

double quantity(const std::string& entry, const nlohmann::ordered_json& value, dimension what, std::string_view unit)
{
    const std::string expected = "a number in " + std::string{unit};
    if (!value.is_object()) return finite_number(entry, value, expected);
    check_members(entry, value, {"value", "unit", "uncertainty", "comment"});
    if (!value.contains("value")) refuse(entry + " has no \"value\"");
    const double number = finite_number(entry, value["value"], "a number");
    if (!value.contains("unit")) return number;
    return converted(entry, number, what, text_of("the unit of " + entry, value["unit"]), unit);
}

void check_members(const std::string& entry, const nlohmann::ordered_json& object,
                   std::initializer_list<std::string_view> known)
{
    for (const auto& member : object.items())
        if (std::find(known.begin(), known.end(), member.key()) == known.end())
            refuse(entry + " has the unknown member \"" + shown_name(member.key()) + "\"");
}

}  // namespace zentrix::host
