#include "host/parameters/parameter_file.h"

#include <cmath>
#include <stdexcept>

#include "host/files/file_error.h"
#include "host/parameters/json_file.h"
#include "host/parameters/parameter_entries.h"

namespace zentrix::host {

using json = nlohmann::ordered_json;

namespace {

/// Whether the file is a record: its other members say where a result comes from and are not read.
bool is_record(const json& root) { return root.is_object() && root.contains("parameters"); }

void refuse_parameters_outside(const json& record)
{
    for (const auto& member : record.items())
        if (is_parameter(member.key()))
            throw std::invalid_argument{member.key() + " is outside of \"parameters\", which the file has, too"};
}

parameter_set parameters_of(const json& root, const std::filesystem::path& name)
{
    try {
        if (!is_record(root)) return parameters_in(root);
        refuse_parameters_outside(root);
        return parameters_in(root["parameters"]);
    } catch (const std::invalid_argument& problem) {
        throw file_error{name, problem.what()};
    }
}

}  // namespace

parameter_set read_parameters(const std::filesystem::path& file) { return parameters_of(read_json(file), file); }

parameter_set parse_parameters(const std::string& text, const std::filesystem::path& name)
{
    return parameters_of(parse_json(text, name), name);
}

json as_json(const parameter_set& set)
{
    json object = json::object();
    const auto finite = [](const std::string& name, double number) {
        if (!std::isfinite(number)) throw std::invalid_argument{name + " is not a finite number"};
        return number;
    };
    const auto add = [&](const char* name, const std::optional<double>& value, const char* unit) {
        if (value) object[name] = {{"value", finite(name, *value)}, {"unit", unit}};
    };
    add("kv", set.kilovolts, "kV");
    add("wavelength", set.wavelength_nm, "nm");
    add("pixel", set.pixel_nm, "nm");
    for (const auto& [which, value] : set.coefficients) {
        const auto& about = lens::traits(which);
        const std::string name{about.name};
        json& entry = object[name];
        entry[about.symmetry == 0 ? "value" : "modulus"] = finite(name, value.modulus);
        entry["unit"] = about.unit;
        if (about.symmetry == 0) continue;
        entry["angle"] = finite(name, value.angle_degrees);
        entry["angle_unit"] = "deg";
    }
    add("focus_spread", set.focus_spread_nm, "nm");
    add("convergence", set.convergence_mrad, "mrad");
    add("vibration", set.vibration_nm, "nm");
    if (set.tilt_mrad)
        object["tilt"] = {{"value", {finite("tilt", set.tilt_mrad->real()), finite("tilt", set.tilt_mrad->imag())}},
                          {"unit", "mrad"}};
    if (set.envelope) object["envelope"] = name_of(*set.envelope);
    return object;
}

json as_json(const parameter_set& set, other_notation notation, const file_frame& frame)
{
    parameter_set without = set;
    without.coefficients.clear();
    json object{{"notation", name_of(notation)}};
    const file_frame directions{"", "", frame.clockwise, frame.zero_degrees};  // each number has its unit
    if (json written = as_json(directions); !written.empty()) object["frame"] = std::move(written);
    object.update(as_json(without));
    object.update(entries_of(set.coefficients, notation, frame));
    return object;
}

void write_parameters(const std::filesystem::path& file, const parameter_set& parameters)
{
    write_json(file, as_json(parameters));
}

}  // namespace zentrix::host
