#include "host/parameters/nexus_names.h"

#include <algorithm>
#include <regex>

#include "host/parameters/json_file.h"
#include "host/parameters/quantity.h"

namespace zentrix::host {

namespace {

using json = nlohmann::ordered_json;

bool is_component(const std::string& name) { return name.ends_with("_a") || name.ends_with("_b"); }

/// The notation that most of NeXus' names say. One file has one of them; names of the others are refused later.
other_notation form_of(const named_entries& entries)
{
    const auto has = [&](auto test) { return std::ranges::any_of(entries, test, &named_entries::value_type::first); };
    if (has(is_component)) return other_notation::cartesian;
    const auto has_two_indices = [](const std::string& name) { return name.size() == 5; };
    return has(has_two_indices) ? other_notation::polar : other_notation::corrector;
}

/// "C12a" for "c_1_2_a", "A1" for "a_1".
std::string plain_name(const std::string& name)
{
    std::string plain = name;
    std::erase(plain, '_');
    plain[0] = static_cast<char>(plain[0] - 'a' + 'A');
    return plain;
}

/// The name of a coefficient's angle: "phi12" for "C12", "phiA1" for "A1".
std::string angle_name(const std::string& plain) { return "phi" + (plain.size() == 3 ? plain.substr(1) : plain); }

/// A field and its units, which converters of HDF5 to JSON write in several ways.
json with_units(const std::string& entry, const json& object, const std::string& field, const std::string& units)
{
    if (object[field].is_object()) return object[field];
    for (const std::string& name : {units, field + "_units", field + "@units", field + "/@units"})
        if (object.contains(name)) return {{"value", object[field]}, {"unit", object[name]}};
    refuse(entry + " has no units of its " + field + ": \"" + shown_name(units) + "\"");
}

void check_entry(const std::string& name, const json& value)
{
    if (name == "defocus")
        refuse("defocus: programs disagree on its sign. Use c_1_0 or c_1 instead, which is negative if underfocused");
    if (!is_nexus_name(name)) refuse("\"" + shown_name(name) + "\" is not a name of NeXus' model of aberrations");
    if (!value.is_object()) refuse(name + R"( is an object {"magnitude": ..., "units": ...}, not )" + shown(value));
    check_members(name, value,
                  {"magnitude", "units", "magnitude_units", "magnitude@units", "magnitude/@units", "angle",
                   "angle_units", "angle@units", "angle/@units", "alias", "name", "description", "delta_time",
                   "uncertainty", "uncertainty_model", "confidence_level", "comment"});
    if (!value.contains("magnitude")) refuse(name + " has no \"magnitude\"");
}

bool is_round(const std::string& name) { return name[0] == 'c' && (name.size() == 3 || name[4] == '0'); }

}  // namespace

bool is_nexus_name(const std::string& name)
{
    static const std::regex form{"[abcdrs]_[0-9]|c_[0-9]_[0-9](_[ab])?"};
    return name.size() <= 7 && std::regex_match(name, form);
}

std::string nexus_name_of(const std::string& cartesian)
{
    std::string name = "c";
    for (const char letter : cartesian.substr(1)) name += {'_', letter};
    return name;
}

coefficient_map nexus_coefficients_in(const named_entries& entries, const file_frame& frame)
{
    std::vector<std::pair<std::string, json>> plain;
    for (const auto& [name, value] : entries) {
        check_entry(name, *value);
        plain.emplace_back(plain_name(name), with_units(name, *value, "magnitude", "units"));
        if (is_component(name) || is_round(name)) {
            if (value->contains("angle")) refuse(name + " has no angle");
            continue;
        }
        if (!value->contains("angle")) refuse(name + " needs an angle");
        plain.emplace_back(angle_name(plain_name(name)), with_units(name, *value, "angle", "angle_units"));
    }
    named_entries references;
    for (const auto& [name, value] : plain) references.emplace_back(name, &value);
    return coefficients_in(references, form_of(entries), frame);
}

}  // namespace zentrix::host
