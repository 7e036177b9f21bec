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
void shift(const dm::read_lock& from, const dm::write_lock& to)
{
    const auto source = from.view<std::complex<T>>();
    const auto destination = to.view<std::complex<T>>();
    dm::require_in_place_or_apart(source, destination);
    shift_half(dm::flat_plane(source), dm::flat_plane(destination), from.width(), from.height(),
               to.width() * to.height());
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

    dm::with_locks(
        dm::reading{source}, dm::writing{destination}, [&](const dm::read_lock& from, const dm::write_lock& to) {
            dm::require(to.width() * to.height() >= from.width() * from.height(), dm::errors::different_size);
            single ? shift<float>(from, to) : shift<double>(from, to);
        });
    return destination;
}

}  // namespace qorv::optics
