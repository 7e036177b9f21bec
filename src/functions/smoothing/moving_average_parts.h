#pragma once

#include <algorithm>
#include <complex>
#include <cstddef>
#include <vector>

#include "numeric/complex.h"

/// What the variants of the moving averages share.
namespace qorv::functions::box {

using numeric::real_of;

/// Factors of a one-dimensional pass for each sample of a line: result = sum * inverse() * [i], 1 in the interior
/// (which multiplies exactly) and behind the line. The same quotients as in `box_pass_kernel`.
template <class R>
class pass_scale
{
  public:
    /// `behind` more factors than samples, for vectors that reach over the end.
    pass_scale(std::ptrdiff_t n, std::ptrdiff_t radius, std::ptrdiff_t behind = 0)
        : factors_(static_cast<std::size_t>(n + behind), R(1))
    {
        const auto window = static_cast<R>(2 * radius + 1);
        inverse_ = R(1) / window;
        for (std::ptrdiff_t i = 0; i < std::min(n - radius, radius + 1); ++i)
            factors_[i] = window / static_cast<R>(i + radius + 1);
        for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(n - radius, 0); i < n; ++i)
            factors_[i] = window / static_cast<R>(n - i + radius);
    }
    R inverse() const { return inverse_; }
    R operator[](std::ptrdiff_t i) const { return factors_[static_cast<std::size_t>(i)]; }

  private:
    R inverse_;
    std::vector<R> factors_;
};

}  // namespace qorv::functions::box
