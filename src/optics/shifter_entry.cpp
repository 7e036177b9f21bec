#include "optics/shifter_entry.h"

#include <complex>

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "image/overlap.h"
#include "optics/shifter.h"

namespace qorv::optics {
namespace {

bool both_complex(const binding::image_ref& a, const binding::image_ref& b, std::int32_t bytes)
{
    return binding::IsComplexDataType(a, bytes) && binding::IsComplexDataType(b, bytes);
}

template <class T>
void shift(dm::read_lock& from, dm::write_lock& to)
{
    dm::require_in_place_or_apart(from.view<std::complex<T>>(), to.view<std::complex<T>>());
    shift_half(dm::flat_plane(from.view<std::complex<T>>()), dm::flat_plane(to.view<std::complex<T>>()), from.width(),
               from.height(), to.width() * to.height());
}

}  // namespace

binding::image_ref ImageShifterForSemperDM(binding::image_ref source, std::int32_t, std::int32_t, double shift_x,
                                           double shift_y, double, binding::image_ref destination)
{
    const dm::timing_scope timing{"ImageShifterForSemperDM"};
    dm::require_image(source);
    destination = dm::or_clone_of(std::move(destination), source);
    const bool single = both_complex(source, destination, 8);
    dm::require(single || both_complex(source, destination, 16), dm::errors::all_same_complex);
    std::int32_t width = 0, height = 0;
    binding::GetSize(source, width, height);
    require_shift(width, height, shift_x, shift_y);

    dm::read_lock from{source};
    dm::write_lock to{destination};
    dm::require(to.width() * to.height() >= from.width() * from.height(), dm::errors::different_size);
    single ? shift<float>(from, to) : shift<double>(from, to);
    to.release();
    from.release();
    return destination;
}

}  // namespace qorv::optics
