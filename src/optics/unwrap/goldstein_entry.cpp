#include "optics/goldstein_entry.h"

#include "image/frame.h"
#include "image/timing_scope.h"
#include "optics/goldstein.h"

namespace qorv::optics {

host::image_ref GoldstainDM(host::image_ref source, std::int32_t max_box_size)
{
    const dm::timing_scope timing{"GoldstainDM"};
    dm::require_image(source);
    dm::require(host::IsRealDataType(source, 4), dm::errors::should_be_real4);
    dm::read_lock from{source};
    const auto width = static_cast<std::int32_t>(from.width()), height = static_cast<std::int32_t>(from.height());
    const host::image_ref flags = host::IntegerImage("", 4, false, width, height);
    host::image_ref result = host::ImageClone(source);
    dm::write_lock scratch{flags};
    dm::write_lock to{result};
    unwrap_goldstein(dm::flat_plane(from.view<float>()), dm::flat_plane(to.view<float>()), width, height, max_box_size,
                     dm::flat_plane(scratch.view<std::uint32_t>()));
    to.release();  // tells the host that the result changed
    scratch.release();
    from.release();
    return result;
}

}  // namespace qorv::optics
