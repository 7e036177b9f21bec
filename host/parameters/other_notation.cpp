#include "host/parameters/other_notation.h"

#include <algorithm>
#include <regex>

#include "host/objects/calibration.h"
#include "host/parameters/json_file.h"
#include "host/parameters/nexus_names.h"
#include "host/parameters/quantity.h"

namespace zentrix::host {

namespace {

using json = nlohmann::ordered_json;

constexpr const char* names_of_notations[] = {"polar", "cartesian", "corrector", "nexus"};

lens::notation form_of(other_notation notation)
{
    switch (notation) {
        case other_notation::polar: return lens::notation::polar;
        case other_notation::corrector: return lens::notation::corrector;
        default: return lens::notation::cartesian;
    }
}

bool is_angle(const std::string& name) { return name.starts_with("phi"); }

/// The number of an entry in the units of the frame, or in nm and degrees if that has none.
double number_of(const std::string& name, const json& value, const file_frame& frame)
{
    const bool angle = is_angle(name);
    const std::string& unit = angle ? frame.angle : frame.length;
    const char* const what = angle ? "angle" : "length";
    const bool has_unit = value.is_object() && value.contains("unit");
    if (unit.empty() && !has_unit && (value.is_number() || value.is_object()))
        refuse(name + R"( has no unit: give it as {"value": ..., "unit": ...}, or give "frame": {")" + what +
               "\": " + (angle ? R"("deg" or "rad"})" : R"("nm" or "A"})"));
    return quantity(name, value, angle ? dimension::angle : dimension::length,
                    !unit.empty() ? unit : std::string{angle ? "deg" : "nm"});
}

void check_names(const named_entries& entries, other_notation notation)
{
    const auto known = lens::to_notation({}, form_of(notation), {});
    for (const auto& [name, value] : entries) {
        const auto is_it = [&, &own = name](const auto& number) { return number.first == own; };
        const bool is_alias = notation != other_notation::corrector && (name == "defocus" || name == "Cs");
        if (!is_alias && std::ranges::none_of(known, is_it))
            refuse("\"" + shown_name(name) + "\" is not a coefficient of the notation " + name_of(notation));
    }
}

coefficient_map without_zeros(const lens::aberrations& lens)
{
    coefficient_map map;
    for (const auto& about : lens::all_coefficients)
        if (lens[about.which].modulus != 0) map[about.which] = lens[about.which];
    return map;
}

}  // namespace

std::optional<other_notation> notation_named(const std::string& name)
{
    const auto* const found = std::ranges::find(names_of_notations, name);
    if (found == std::end(names_of_notations)) return std::nullopt;
    return static_cast<other_notation>(found - names_of_notations);
}

const char* name_of(other_notation notation) { return names_of_notations[static_cast<int>(notation)]; }

std::optional<other_notation> notation_of_name(const std::string& name)
{
    static const std::regex polar{"(C|phi)[0-9][0-9]"}, cartesian{"C[0-9][0-9][ab]"}, corrector{"phi[A-Z][0-9]"};
    if (name.size() > 8) return std::nullopt;  // the longest, c_1_2_a, has 7
    if (std::regex_match(name, polar)) return other_notation::polar;
    if (std::regex_match(name, cartesian)) return other_notation::cartesian;
    if (std::regex_match(name, corrector)) return other_notation::corrector;
    if (is_nexus_name(name)) return other_notation::nexus;
    return std::nullopt;
}

file_frame frame_in(const json& object)
{
    if (!object.is_object()) refuse("frame is an object, not " + shown(object));
    check_members("frame", object, {"length", "angle", "clockwise", "zero", "comment"});
    file_frame frame;
    if (object.contains("length")) frame.length = text_of("the length of frame", object["length"]);
    if (object.contains("angle")) frame.angle = text_of("the angle of frame", object["angle"]);
    if (!frame.length.empty() && !unit_size(dimension::length, frame.length))
        refuse("the length of frame is a unit such as \"nm\" or \"A\", not " + shown(object["length"]));
    if (!frame.angle.empty() && frame.angle != "deg" && frame.angle != "rad")
        refuse("the angle of frame is \"deg\" or \"rad\", not " + shown(object["angle"]));
    if (object.contains("clockwise")) {
        if (!object["clockwise"].is_boolean())
            refuse("clockwise in frame is true or false, not " + shown(object["clockwise"]));
        frame.clockwise = object["clockwise"].get<bool>();
    }
    if (object.contains("zero"))
        frame.zero_degrees = quantity("zero in frame", object["zero"], dimension::angle, "deg");
    return frame;
}

json as_json(const file_frame& frame)
{
    json object = json::object();
    if (!frame.length.empty()) object["length"] = frame.length;
    if (!frame.angle.empty()) object["angle"] = frame.angle;
    if (frame.clockwise) object["clockwise"] = true;
    if (frame.zero_degrees != 0) object["zero"] = frame.zero_degrees;
    return object;
}

lens::notation_frame notation_frame_of(const file_frame& frame)
{
    return {frame.length.empty() ? 1 : unit_size(dimension::length, frame.length).value(), frame.angle == "rad",
            frame.clockwise, frame.zero_degrees};
}

coefficient_map coefficients_in(const named_entries& entries, other_notation notation, const file_frame& frame)
{
    if (notation == other_notation::nexus) return nexus_coefficients_in(entries, frame);
    check_names(entries, notation);
    lens::named_numbers numbers;
    for (const auto& [name, value] : entries) numbers.emplace_back(name, number_of(name, *value, frame));
    return without_zeros(lens::from_notation(numbers, form_of(notation), notation_frame_of(frame)));
}

json entries_of(const coefficient_map& coefficients, other_notation notation, const file_frame& frame)
{
    lens::aberrations lens;
    for (const auto& [which, value] : coefficients) lens[which] = value;
    const std::string length = frame.length.empty() ? "nm" : frame.length;
    const std::string angle = frame.angle == "rad" ? "rad" : "deg";
    const auto numbers = lens::to_notation(lens, form_of(notation), notation_frame_of(frame));
    json entries = json::object();
    std::size_t next = 0;
    for (const auto& about : lens::all_coefficients)
        for (int part = 0; part < (about.symmetry == 0 ? 1 : 2); ++part) {
            const auto& [name, value] = numbers[next++];
            if (!coefficients.contains(about.which)) continue;
            if (notation == other_notation::nexus)
                entries[nexus_name_of(name)] = {{"magnitude", value}, {"units", length}};
            else
                entries[name] = {{"value", value}, {"unit", is_angle(name) ? angle : length}};
        }
    return entries;
}

}  // namespace zentrix::host
