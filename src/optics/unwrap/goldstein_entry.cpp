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
    const auto width = static_cast<std::int32_t>(dm::size_along(source, 0));
    const auto height = static_cast<std::int32_t>(dm::size_along(source, 1));
    const binding::image_ref flags = binding::IntegerImage("", 4, false, width, height);
    binding::image_ref result = binding::ImageClone(source);
    dm::with_locks(dm::reading{source}, dm::writing{flags}, dm::writing{result},
                   [&](const dm::read_lock& from, const dm::write_lock& scratch, const dm::write_lock& to) {
                       unwrap_goldstein(dm::flat_plane(from.view<float>()), dm::flat_plane(to.view<float>()), width,
                                        height, max_box_size, dm::flat_plane(scratch.view<std::uint32_t>()));
                   });
    return result;
}

}  // namespace qorv::optics
