#pragma once

#include <vector>

#include "image/image.h"

namespace qorv::functions {

/// A plane lattice in pixel coordinates (x right, y down): the points origin + h * a + k * b with integer h and k.
struct lattice
{
    double a_x, a_y, b_x, b_y;
    double origin_x, origin_y;

    /// From a matrix of two rows: x = m11 h + m12 k + m13, y = m21 h + m22 k + m23. Without a third column the origin
    /// is pixel (width / 2, height / 2), the origin of a centred transform.
    /// matrix  2 or 3 wide, 2 high
    /// Throws  errors::invalid_matrix_size; errors::parameters_invalid for an element that is not finite
    template <class Element>
    static lattice from(const dm::image<const Element>& matrix, std::ptrdiff_t width, std::ptrdiff_t height);
};

/// The transmission around a point of the mask.
struct disc
{
    double radius;  ///< [pixel] >= 0
    double rim;     ///< half the width of the soft rim, [pixel] >= 0

    /// 1 up to radius - rim and 0 from radius + rim on; between them half a period of a cosine,
    /// (1 - sin(pi/2 (distance - radius) / rim)) / 2. Without a rim 1 up to the radius itself.
    double at(double distance) const;
};

/// A place of the peak list: pixel coordinates, or lattice indices h and k.
struct peak
{
    double x, y;
};

/// Factors in 0..1, rows of `width`. Where discs overlap, the greater factor applies.
using mask_plane = std::vector<double>;

/// Discs around all points of the lattice.
/// Throws  errors::parameters_invalid for a radius or rim that is negative or not finite, and for lattice vectors that
///         are parallel or zero
mask_plane lattice_mask(const lattice& points, const disc& shape, std::ptrdiff_t width, std::ptrdiff_t height);

/// Discs around the peaks, in pixels. A peak that is not finite has no disc.
/// Throws  errors::parameters_invalid for a radius or rim that is negative or not finite
mask_plane peak_mask(const std::vector<peak>& peaks, const disc& shape, std::ptrdiff_t width, std::ptrdiff_t height);

/// Converts lattice indices to pixel coordinates.
std::vector<peak> placed(const std::vector<peak>& indices, const lattice& points);

/// Multiplies each plane by the mask. Where the mask is 0 the result is 0, and where it is 1 the element is unchanged,
/// even if it is NaN.
/// source       any strides, planes of the mask's size; complex of float or double
/// destination  size of the source; may be the source
/// Throws       errors::different_size; errors::out_of_place for any other overlap
template <class T>
void apply_mask(const dm::image<const T>& source, const mask_plane& mask, const dm::image<T>& destination);

}  // namespace qorv::functions
