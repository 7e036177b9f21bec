#include "host/parameters/parameter_entries.h"

#include <algorithm>
#include <array>
#include <optional>

#include "host/parameters/json_file.h"
#include "host/parameters/other_notation.h"
#include "host/parameters/quantity.h"
#include "lens/numbers.h"
#include "lens/plausible_units.h"

namespace zentrix::host {

namespace {

using json = nlohmann::ordered_json;

double positive(const std::string& name, double value)
{
    if (!(value > 0)) refuse(name + " has to be positive");
    return value;
}

double not_negative(const std::string& name, double value)
{
    if (value < 0) refuse(name + " must not be negative");
    return value;
}

void read_kilovolts(parameter_set& set, const std::string& name, const json& value)
{
    if (set.kilovolts) refuse("kv and energy are the same parameter: give one of them");
    const double kilovolts = name == "energy" ? quantity(name, value, dimension::voltage, "eV") / 1e3
                                              : quantity(name, value, dimension::voltage, "kV");
    lens::check_kilovolts(kilovolts);
    set.kilovolts = kilovolts;
}

void read_pixel(parameter_set& set, const std::string& name, const json& value)
{
    const double nanometres = quantity(name, value, dimension::length, "nm");
    lens::check_pixel_size(nanometres);
    set.pixel_nm = nanometres;
}

std::complex<double> tilt_in(const json& value, std::string_view unit)
{
    const std::string expected = "tilt is [right, up] in mrad, not " + shown(value);
    const auto in_mrad = [&](double part) { return converted("tilt", part, dimension::angle, unit, "mrad"); };
    if (value.is_array() && value.size() == 2)
        return {in_mrad(finite_number("a part of tilt", value[0], "a number")),
                in_mrad(finite_number("a part of tilt", value[1], "a number"))};
    if (!value.is_string()) refuse(expected);
    const auto pair = lens::parse_pair(value.get<std::string>());
    if (!pair) refuse(expected);
    return {in_mrad(pair->first), in_mrad(pair->second)};
}

void read_tilt(parameter_set& set, const std::string& name, const json& value)
{
    if (!value.is_object()) {
        set.tilt_mrad = tilt_in(value, "mrad");
        return;
    }
    check_members(name, value, {"value", "unit", "uncertainty", "comment"});
    if (!value.contains("value")) refuse(name + " has no \"value\"");
    set.tilt_mrad =
        tilt_in(value["value"], value.contains("unit") ? text_of("the unit of tilt", value["unit"]) : "mrad");
}

void read_envelope(parameter_set& set, const std::string& name, const json& value)
{
    for (const auto which : {lens::damping::automatic, lens::damping::on, lens::damping::off})
        if (value == name_of(which)) set.envelope = which;
    if (!set.envelope) refuse(name + " is \"auto\", \"on\" or \"off\", not " + shown(value));
}

struct entry_reader
{
    std::string_view name;
    void (*read)(parameter_set& set, const std::string& name, const json& value);
};

template <std::optional<double> parameter_set::*width, dimension what>
void read_width(parameter_set& set, const std::string& name, const json& value)
{
    set.*width = not_negative(name, quantity(name, value, what, what == dimension::length ? "nm" : "mrad"));
}

void read_wavelength(parameter_set& set, const std::string& name, const json& value)
{
    set.wavelength_nm = positive(name, quantity(name, value, dimension::length, "nm"));
}

constexpr std::array<entry_reader, 9> readers{
    {{"kv", read_kilovolts},
     {"energy", read_kilovolts},
     {"wavelength", read_wavelength},
     {"pixel", read_pixel},
     {"focus_spread", read_width<&parameter_set::focus_spread_nm, dimension::length>},
     {"convergence", read_width<&parameter_set::convergence_mrad, dimension::angle>},
     {"vibration", read_width<&parameter_set::vibration_nm, dimension::length>},
     {"tilt", read_tilt},
     {"envelope", read_envelope}}};

const entry_reader* reader_of(const std::string& name)
{
    const auto* const found = std::ranges::find(readers, name, &entry_reader::name);
    return found == readers.end() ? nullptr : found;
}

const lens::coefficient_traits* coefficient_named(const std::string& name)
{
    const auto* const found = std::ranges::find(lens::all_coefficients, name, &lens::coefficient_traits::name);
    return found == lens::all_coefficients.end() ? nullptr : found;
}

lens::polar coefficient_in_object(const lens::coefficient_traits& about, const json& value)
{
    const std::string name{about.name};
    check_members(name, value,
                  {"value", "modulus", "unit", "angle", "angle_unit", "uncertainty", "angle_uncertainty", "comment"});
    if (value.contains("value") == value.contains("modulus"))
        refuse(name + " needs \"modulus\" (or \"value\", which is the same)");
    const json& given = value.contains("value") ? value["value"] : value["modulus"];
    double modulus = finite_number(name, given, "a number");
    if (value.contains("unit"))
        modulus =
            converted(name, modulus, dimension::length, text_of("the unit of " + name, value["unit"]), about.unit);
    if (!value.contains("angle")) return {modulus, 0};
    if (about.symmetry == 0) refuse(name + " is round and has no angle");
    const double angle = finite_number("the angle of " + name, value["angle"], "a number of degrees");
    if (!value.contains("angle_unit")) return {modulus, angle};
    return {modulus,
            converted(name, angle, dimension::angle, text_of("the angle_unit of " + name, value["angle_unit"]), "deg")};
}

lens::polar coefficient_in(const lens::coefficient_traits& about, const json& value)
{
    const std::string name{about.name};
    if (value.is_object()) return coefficient_in_object(about, value);
    if (value.is_string()) return lens::parse_coefficient(about.which, value.get<std::string>());
    const std::string unit{about.unit};
    if (about.symmetry == 0) return {finite_number(name, value, "a number in " + unit), 0};
    if (value.is_array() && value.size() == 2)
        return {finite_number("the modulus of " + name, value[0], "a number in " + unit),
                finite_number("the angle of " + name, value[1], "a number of degrees")};
    return {finite_number(name, value, "a number or [modulus, angle] in " + unit + " and degrees"), 0};
}

bool same_letters(std::string_view a, std::string_view b)
{
    const auto lower = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter + 32 : letter; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

[[noreturn]] void refuse_unknown(const std::string& name)
{
    std::string near;
    for (const auto& one : readers)
        if (same_letters(one.name, name)) near = one.name;
    for (const auto& one : lens::all_coefficients)
        if (same_letters(one.name, name)) near = one.name;
    refuse("\"" + shown_name(name) + "\" is not a parameter" +
           (near.empty() ? "" : ". Did you mean \"" + near + "\"?"));
}

/// Members that say something about the others. "model" repeats what the names of coefficients show.
constexpr std::string_view not_parameters[] = {"comment", "uncertainties", "notation", "frame", "model"};

/// The notation of the coefficients, as the file says or their names show; nothing for that of this program.
std::optional<other_notation> notation_in(const json& object)
{
    std::optional<other_notation> shown_by_names;
    for (const auto& member : object.items())
        if (const auto one = notation_of_name(member.key()); one && (!shown_by_names || *one > *shown_by_names))
            shown_by_names = one;  // C10 may be cartesian
    if (!object.contains("notation")) return shown_by_names;
    const std::string name = text_of("notation", object["notation"]);
    const auto said = notation_named(name);
    if (!said && name != "zentrix")
        refuse(R"(notation is "zentrix", "polar", "cartesian", "corrector" or "nexus", not )" +
               shown(object["notation"]));
    return said;
}

/// With the members of "aberration_model", a group of NeXus files, in place of it.
json with_model_unfolded(const json& object)
{
    const char group[] = "aberration_model";
    if (!object.contains(group)) return object;
    json all = object;
    all.erase(group);
    if (!object[group].is_object()) refuse(std::string{group} + " is an object, not " + shown(object[group]));
    for (const auto& [name, value] : object[group].items()) {
        if (all.contains(name)) refuse(shown_name(name) + " is given twice");
        all[name] = value;
    }
    return all;
}

/// The command line has hyphens where Python has underscores.
std::string with_underscores(std::string name)
{
    std::ranges::replace(name, '-', '_');
    return name;
}

}  // namespace

const char* name_of(lens::damping envelope)
{
    return envelope == lens::damping::automatic ? "auto" : envelope == lens::damping::on ? "on" : "off";
}

bool is_parameter(const std::string& name)
{
    return reader_of(with_underscores(name)) || coefficient_named(name) || notation_of_name(name);
}

parameter_set parameters_in(const json& object)
{
    if (!object.is_object()) refuse("expected an object of parameters, not " + shown(object));
    const json all = with_model_unfolded(object);
    const auto other = notation_in(all);
    const file_frame frame = all.contains("frame") ? frame_in(all["frame"]) : file_frame{};
    if (!other && all.contains("frame")) refuse(R"(frame is for the coefficients of another "notation")");
    parameter_set set;
    named_entries others;
    for (const auto& [given, value] : all.items()) {
        if (std::ranges::find(not_parameters, given) != std::end(not_parameters)) continue;
        const std::string name = with_underscores(given);
        if (name != given && all.contains(name)) refuse(name + " is given twice");
        const auto* const about = coefficient_named(name);
        if (const auto* const reader = reader_of(name))
            reader->read(set, name, value);
        else if (other)
            others.emplace_back(given, &value);
        else if (about)
            set.coefficients[about->which] = coefficient_in(*about, value);
        else
            refuse_unknown(given);
    }
    if (other) set.coefficients = coefficients_in(others, *other, frame);
    if (set.kilovolts && set.wavelength_nm) refuse("kv and wavelength exclude each other: give one of them");
    return set;
}

}  // namespace zentrix::host
