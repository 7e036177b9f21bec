#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

/// Separable Gaussian blur of float and double images, renormalised at the border.
namespace qorv::functions {

/// Blurs each plane along x, then along y. The kernel has n = ceil(order * sigma + 1) weights, the product and the sum
/// in single precision, w[i] = exp(-i^2 / (2 sigma^2)); the window reaches n - 1 samples to each side, taps outside the
/// line are dropped and the others' weights renormalised. Sums in double precision; what the x pass found is rounded to
/// the element type before the y pass. sigma 0 or order 0 copies (a negative zero stays one).
/// from    the source; strides of any size and sign
/// to      the destination: width and height of the source; the planes that both have are written; may be the source
/// sigma   standard deviation [pixels], >= 0; infinity with an order above 0 gives the mean of row and column
/// order   the kernel ends at order * sigma, >= 0
/// A NaN or infinite pixel reaches every result whose window holds it, a tap with weight 0 included.
/// Throws  errors::parameters_invalid on null data, an empty width or height, a negative or NaN sigma, a negative order
template <class T>
void gaussian_blur(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to, double sigma,
                   std::int32_t order);

/// The weights w[0] = 1, w[1] ... of that kernel, at most `limit`: a line of `limit` samples never meets the others.
std::vector<double> gaussian_weights(double sigma, std::int32_t order, std::ptrdiff_t limit);

/// One plane, in place or out of place. Each result is acc / wsum, where acc starts with w[0] * x and wsum with w[0];
/// for i = 1, 2 ... the tap on the left and then the tap on the right are added to both, if they exist.
template <class T>
using gaussian_kernel = void(const dm::image<const T>& from, const dm::image<T>& to,
                             const std::vector<double>& weights);

template <class T>
void gaussian_plain(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights);

/// Several pixels at a time with the same operations in the same order: the same bits (but for the payloads of NaNs).
/// A destination without contiguous rows goes to the plain variant.
template <class T>
void gaussian_sse(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights);

template <class T>
inline constexpr dm::variant<gaussian_kernel<T>> gaussian_variants[] = {{"sse2", dm::cpu::sse2, gaussian_sse<T>},
                                                                        {"plain", dm::cpu::none, gaussian_plain<T>}};

}  // namespace qorv::functions
