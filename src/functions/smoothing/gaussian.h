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
/// in single precision, w[i] = exp(-i^2 / (2 sigma^2)). The window extends n - 1 samples to each side; taps outside the
/// line are dropped and the other weights renormalised. Sums are in double precision; the result of the x pass is
/// rounded to the element type before the y pass. With sigma 0 or order 0 the image is copied, negative zeros included.
/// from    the source; strides of any size and sign
/// to      the destination: width and height of the source; the planes that both have are written; may be the source
/// sigma   standard deviation [pixels], >= 0; infinity with an order above 0 gives the mean of row and column
/// order   the kernel ends at order * sigma, >= 0
/// A NaN or infinite pixel reaches every result whose window contains it, even at a tap with weight 0.
/// Time    proportional to the pixels times the smaller of n and the width (the height in the y pass)
/// Throws  errors::parameters_invalid on null data, an empty width or height, a negative or NaN sigma, a negative order
template <class T>
void gaussian_blur(const dm::image<const std::type_identity_t<T>>& from, const dm::image<T>& to, double sigma,
                   std::int32_t order);

/// The weights w[0] = 1, w[1] ... of the kernel, at most `limit`: in a line of `limit` samples no other weight is used.
std::vector<double> gaussian_weights(double sigma, std::int32_t order, std::ptrdiff_t limit);

/// The sum of the weights that meet a line of `n` samples, for each of its samples; n > 0.
std::vector<double> gaussian_norms(const std::vector<double>& weights, std::ptrdiff_t n);

/// The planes that both images have, in place or out of place. Each result is acc / wsum, where acc starts with w[0] *
/// x and wsum with w[0]; for i = 1, 2 ... the tap on the left and then the tap on the right are added to both, if they
/// exist.
template <class T>
using gaussian_kernel = void(const dm::image<const T>& from, const dm::image<T>& to,
                             const std::vector<double>& weights);

template <class T>
void gaussian_plain(const dm::image<const T>& from, const dm::image<T>& to, const std::vector<double>& weights);

namespace gauss {

/// A weight in all lanes of a vector, and the samples to which it applies: before and after the pixels of the line, in
/// their order. The pointers are stored because GCC, when it computes them, runs out of registers.
struct tap
{
    double weight[4];
    const double *before, *after;
};

/// Elements that a group of pixels may reach beyond a line.
inline constexpr std::ptrdiff_t slack = 16;

/// The memory of the vector forms, which have no containers of their own.
struct workspace
{
    std::ptrdiff_t count;           ///< of the taps
    tap* taps;                      ///< with their weights
    const double* norms_of_row;     ///< gaussian_norms of the width, then `slack` ones
    const double* norms_of_column;  ///< gaussian_norms of the height
    double* line;                   ///< a row of the image; on both sides `slack` elements that are -0
    double** rows;                  ///< for each row of the image its place in a ring of as many as the window reaches
    std::ptrdiff_t block;           ///< columns that a row of the ring has room for, a multiple of `slack`
    double* norm;                   ///< `block` elements, zero at the start
};

}  // namespace gauss

/// Several pixels at a time with the operations of the plain variant in the same order: the same bits except for the
/// payloads of NaNs. Rows of the destination must be contiguous. Defined in gaussian_simd.h, instantiated for each
/// instruction set in a file of its own.
template <class Arch, class T>
void gaussian_simd(const dm::image<const T>& from, const dm::image<T>& to, const gauss::workspace& room);

template <class T>
dm::variants<gaussian_kernel<T>> gaussian_variants();

}  // namespace qorv::functions
