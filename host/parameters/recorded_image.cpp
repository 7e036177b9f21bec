#include "host/parameters/recorded_image.h"

#include "host/files/image_file.h"
#include "host/parameters/record.h"

namespace zentrix::host {

image_ref read_recorded_image(const std::filesystem::path& file)
{
    auto read = read_image(file);
    const bool has_scale = read->scale().axes[0].step != 0 || read->scale().kilovolts != 0;
    if (has_scale) return read;
    if (auto recorded = recorded_scale(file, *read)) read->set_scale(*std::move(recorded));
    return read;
}

}  // namespace zentrix::host
