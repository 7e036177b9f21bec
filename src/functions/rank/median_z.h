#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>

/// The median along Z of a stack of planes, position by position, formed as by `median_of` (library/selection.h), whose
/// rules for even counts, NaN and zeros hold here column by column; every variant gives the same bits.
/// Instantiated for float and double.
namespace qorv::functions {

/// Sizes checked; parameters of `median_z`.
template <class T>
using median_z_kernel = void(const dm::image<const T>& stack, const dm::image<T>& destination);

/// Copies the values of each position and selects their median.
template <class T>
void median_z_plain(const dm::image<const T>& stack, const dm::image<T>& destination);

/// Neighbouring positions together through a sorting network. Stacks of more than 512 planes are selected like plain,
/// from copies of several columns at once, and so are columns beside one with a NaN or a -0; positions that are not
/// contiguous along x go the plain way.
template <class T>
void median_z_vector(const dm::image<const T>& stack, const dm::image<T>& destination);

template <class T>
inline constexpr dm::variant<median_z_kernel<T>> median_z_variants[] = {{"vector", dm::cpu::sse2, median_z_vector<T>},
                                                                        {"plain", dm::cpu::none, median_z_plain<T>}};

/// stack        width x height x planes; one plane is copied, of two the mean is taken
/// destination  width x height x 1; may be one of the stack's planes, must not overlap the stack otherwise
/// Throws  errors::parameters_invalid for null data, errors::invalid_image_size for a destination of another shape
template <class T>
void median_z(const dm::image<const T>& stack, const dm::image<T>& destination);

}  // namespace qorv::functions
