#pragma once

#include <cstdint>

#include "functions/statistics/radial_grid.h"
#include "image/image.h"

namespace qorv::functions {

/// The modulus of the result, from the modulus m of the cross-spectrum.
enum class correlation_mode : std::int32_t
{
    plain = 0,       ///< m
    phase_only = 1,  ///< 1, and 0 where m is zero or subnormal
    mutual = 2,      ///< sqrt(m)
};

/// The mode of a script's number.
/// Throws  errors::invalid_mode outside 0..2
correlation_mode correlation_mode_of(std::int32_t number);

struct correlation_filter
{
    radial_grid grid;  ///< spatial frequency of a pixel, finite scales [1/nm per pixel]
    double defocus;    ///< wavelength times the target's defocus minus the reference's, finite [nm^2]
    double radius;     ///< the highest frequency that passes [1/nm] >= 0; infinity: all pass
};

/// Low-pass filtered cross-spectrum with a compensated difference of defocus:
/// destination = target * conj(reference) * exp(+i pi defocus g^2) where g <= radius, and 0 elsewhere. A lens with
/// defocus C1 multiplies a spectrum by exp(-i pi lambda C1 g^2), which the positive sign removes from the target.
/// target, reference, destination   same size, any strides, complex of float or double; the destination may be one of
///            the others. Each plane of a volume is a spectrum of its own.
/// Returns    the mean modulus of the elements within the radius, 0 when there are none. Multiplied by their number it
///            is the height of the correlation peak of equal images.
/// Throws     errors::different_size; errors::parameters_invalid for a scale or defocus that is not finite and for a
///            radius that is negative or NaN; errors::out_of_place for any other overlap
/// Exactness  computed in double, rounded once. A NaN affects its own pixel and the mean.
/// Source     Meyer, Kirkland, Saxton, Ultramicroscopy 92 (2002) 89-109 (correlation with compensated defocus)
template <class T>
double cross_correlation_mask(const dm::image<const T>& target, const dm::image<const T>& reference,
                              const correlation_filter& filter, correlation_mode mode, const dm::image<T>& destination);

}  // namespace qorv::functions
