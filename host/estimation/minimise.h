#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace zentrix::host {

/// A function of several variables. It fills the gradient unless that is empty.
using differentiable = std::function<double(std::span<const double> at, std::span<double> gradient)>;

struct minimum
{
    std::vector<double> at;  ///< where the function had its least value
    double value = 0;
    bool stopped = false;  ///< because the function threw search_stopped
};

/// Thrown by a function to end a search.
struct search_stopped
{};

/// When a search ends, besides at a minimum.
struct search_limits
{
    double step = 1e-3;         ///< changes of all variables below this
    double relative_value = 0;  ///< relative changes of the value below this
    int evaluations = 200;
};

/// The nearest minimum from `start`, by NLopt's L-BFGS (J. Nocedal, Math. Comput. 35 (1980) 773-782).
/// Throws  what the function throws, except search_stopped
minimum descend(const differentiable& function, std::vector<double> start, const search_limits& limits);

/// A minimum near `start` without gradients, by NLopt's BOBYQA (M. J. D. Powell, Cambridge NA2009/06), or for one
/// variable by Nelder-Mead.
/// first_step  of each variable
minimum descend_without_gradient(const differentiable& function, std::vector<double> start,
                                 std::span<const double> first_step, const search_limits& limits);

}  // namespace zentrix::host
