#include "host/parameters/recorded_result.h"

#include <algorithm>
#include <cmath>
#include <system_error>

#include "host/files/npy.h"
#include "host/text/system_path.h"

namespace zentrix::host {

namespace fs = std::filesystem;
using json = nlohmann::ordered_json;

namespace {

constexpr const char* axis_names[] = {"x", "y", "z"};

json shape_of(const image& pixels)
{
    json shape = json::array();
    for (std::size_t d = 0; d < pixels.dimensions(); ++d) shape.push_back(pixels.size(d));
    return shape;
}

/// The image's own scale, completed by the parameters.
calibration scale_of(const image& pixels, const parameter_set& parameters)
{
    calibration scale = pixels.scale();
    const auto is_known = [](const axis_scale& axis) { return axis.step != 0; };
    if (parameters.pixel_nm && std::ranges::none_of(scale.axes, is_known))
        scale.axes[0] = scale.axes[1] = {*parameters.pixel_nm, 0, "nm"};
    if (scale.kilovolts == 0) scale.kilovolts = parameters.kilovolts.value_or(0);
    return scale;
}

json as_json(const calibration& scale, std::size_t dimensions)
{
    json object = json::object();
    for (std::size_t d = 0; d < dimensions; ++d) {
        const auto& [step, first, unit] = scale.axes[d];
        if (step != 0 && std::isfinite(step) && std::isfinite(first))
            object[axis_names[d]] = {{"step", step}, {"first", first}, {"unit", unit}};
    }
    if (scale.kilovolts > 0) object["kv"] = scale.kilovolts;
    return object;
}

double number_or_zero(const json& object, const char* member)
{
    const json value = object.value(member, json{});
    const double number = value.is_number() ? value.get<double>() : 0;
    return std::isfinite(number) ? number : 0;
}

}  // namespace

std::string name_in_record(const fs::path& record, const fs::path& result)
{
    const fs::path folder = fs::absolute(record).lexically_normal().parent_path();
    const auto text = fs::absolute(result).lexically_normal().lexically_proximate(folder).generic_u8string();
    return {text.begin(), text.end()};
}

json entry_for(const fs::path& record, const recorded_result& result, const parameter_set& parameters)
{
    const auto [bytes, digest] = fingerprint_of(result.file);
    json entry{{"file", name_in_record(record, result.file)}, {"size", bytes}, {"digest", digest}};
    if (!result.pixels) return entry;
    entry["type"] = dtype_name(result.pixels->type());
    entry["shape"] = shape_of(*result.pixels);
    if (json scale = as_json(scale_of(*result.pixels, parameters), result.pixels->dimensions()); !scale.empty())
        entry["scale"] = std::move(scale);
    return entry;
}

bool has_recorded_size(const json& entry, const fs::path& file)
{
    std::error_code failed;
    const auto bytes = fs::file_size(file, failed);
    return entry.is_object() && !failed && entry.value("size", json{}) == bytes;
}

bool describes(const json& entry, const image& pixels)
{
    return entry.is_object() && entry.value("type", json{}) == dtype_name(pixels.type()) &&
           entry.value("shape", json{}) == shape_of(pixels);
}

std::optional<calibration> scale_in(const json& entry)
{
    const json object = entry.value("scale", json{});
    if (!object.is_object()) return std::nullopt;
    calibration scale;
    for (std::size_t d = 0; d < 3; ++d) {
        const json axis = object.value(axis_names[d], json{});
        if (!axis.is_object()) continue;
        const json unit = axis.value("unit", json{});
        scale.axes[d] = {number_or_zero(axis, "step"), number_or_zero(axis, "first"),
                         unit.is_string() ? unit.get<std::string>() : std::string{}};
    }
    scale.kilovolts = std::max(0.0, number_or_zero(object, "kv"));
    return scale;
}

}  // namespace zentrix::host
