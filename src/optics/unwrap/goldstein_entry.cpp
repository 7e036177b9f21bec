#include "optics/unwrap/goldstein_entry.h"

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "optics/unwrap/goldstein.h"

namespace qorv::optics {

binding::image_ref GoldstainDM(binding::image_ref source, std::int32_t max_box_size)
{
    const dm::timing_scope timing{"GoldstainDM"};
    dm::require_image(source);
    dm::require(binding::IsRealDataType(source, 4), dm::errors::should_be_real4);
    dm::read_lock from{source};
    const auto width = static_cast<std::int32_t>(from.width()), height = static_cast<std::int32_t>(from.height());
    const binding::image_ref flags = binding::IntegerImage("", 4, false, width, height);
    binding::image_ref result = binding::ImageClone(source);
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
