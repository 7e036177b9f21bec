#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

/// Numbers with units in files of parameters.
namespace zentrix::host {

enum class dimension
{
    length,  ///< pm, A, nm, um, mm, m
    angle,   ///< urad, mrad, rad, deg
    voltage  ///< V, kV, MV; also eV, keV, MeV
};

/// How many nm, mrad or kV the unit is. Nothing for a text that is no unit of this dimension.
std::optional<double> unit_size(dimension what, std::string_view unit);

/// The same quantity in another unit of its dimension; exactly `value` when both units have the same size.
/// Throws  std::invalid_argument naming the entry and the unit that is not one of this dimension
double converted(const std::string& entry, double value, dimension what, std::string_view from, std::string_view to);

/// The finite number of a JSON value. Throws  std::invalid_argument: "pixel is a number in nm, not \"abc\""
double finite_number(const std::string& entry, const nlohmann::ordered_json& value, std::string_view expected);

/// The text of a JSON value. Throws  std::invalid_argument naming the entry
std::string text_of(const std::string& entry, const nlohmann::ordered_json& value);

/// The quantity that a number in `unit`, or an object {"value": number, "unit": text}, gives, in `unit`. The members
/// "uncertainty" and "comment" of the object are ignored.
/// Throws  std::invalid_argument naming the entry and what is wrong with it
double quantity(const std::string& entry, const nlohmann::ordered_json& value, dimension what, std::string_view unit);

/// Throws  std::invalid_argument with this text
[[noreturn]] void refuse(const std::string& text);

/// Throws  std::invalid_argument naming the first member of the object that is not among the known ones
void check_members(const std::string& entry, const nlohmann::ordered_json& object,
                   std::initializer_list<std::string_view> known);

}  // namespace zentrix::host
