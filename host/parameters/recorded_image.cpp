#include "host/parameters/recorded_image.h"

#include <algorithm>
#include <system_error>

#include "host/files/image_file.h"
#include "host/parameters/record.h"

namespace zentrix::host {

namespace fs = std::filesystem;

namespace {

bool has_scale(const calibration& scale)
{
    return std::ranges::any_of(scale.axes, [](const axis_scale& axis) { return axis.step != 0; });
}

}  // namespace

image_ref read_recorded_image(const fs::path& file)
{
    auto read = read_image(file);
    calibration scale = read->scale();
    if (has_scale(scale) && scale.kilovolts != 0) return read;
    if (const auto recorded = recorded_scale(file, *read)) {
        if (!has_scale(scale)) scale.axes = recorded->axes;
        if (scale.kilovolts == 0) scale.kilovolts = recorded->kilovolts;
        read->set_scale(scale);
    }
    return read;
}

void write_recorded_image(const fs::path& file, const image& pixels)
{
    const calibration kept = scale_kept_by(file, pixels.scale());
    const bool is_lost = (has_scale(pixels.scale()) && !has_scale(kept)) || pixels.scale().kilovolts != kept.kilovolts;
    if (!has_readable_extension(file) || (!is_lost && !has_record(file))) return write_image(file, pixels);
    const fs::path record = record_path({file});
    write_image(file, pixels);
    try {
        write_record(record, {}, {{file, &pixels}});
    } catch (...) {  // a former record would describe the file that was replaced
        std::error_code ignored;
        fs::remove(record, ignored);
        throw;
    }
}

}  // namespace zentrix::host
