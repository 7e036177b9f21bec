#include "host/estimation/minimise.h"

#include <nlopt.h>

#include <cmath>
#include <exception>
#include <limits>
#include <memory>
#include <new>

namespace zentrix::host {

namespace {

struct destroy_search
{
    void operator()(nlopt_opt search) const noexcept { nlopt_destroy(search); }
};
using nlopt_search = std::unique_ptr<nlopt_opt_s, destroy_search>;

/// What the function that NLopt calls needs.
struct observed
{
    const differentiable* function;
    nlopt_opt search;
    minimum best;
    std::exception_ptr thrown;
};

/// NLopt is C: an exception must not pass through it.
double evaluate(unsigned count, const double* at, double* gradient, void* data) noexcept
{
    auto& seen = *static_cast<observed*>(data);
    if (seen.thrown || seen.best.stopped) return seen.best.value;
    try {
        const double value = (*seen.function)({at, count}, {gradient, gradient != nullptr ? count : 0});
        if (value < seen.best.value) {
            seen.best.value = value;
            seen.best.at.assign(at, at + count);
        }
        return value;
    } catch (const search_stopped&) {
        seen.best.stopped = true;
    } catch (...) {
        seen.thrown = std::current_exception();
    }
    nlopt_force_stop(seen.search);
    return seen.best.value;
}

minimum run(nlopt_algorithm algorithm, const differentiable& function, std::vector<double> start,
            std::span<const double> first_step, const search_limits& limits)
{
    const nlopt_search made{nlopt_create(algorithm, static_cast<unsigned>(start.size()))};
    if (!made) throw std::bad_alloc{};
    observed seen{&function, made.get(), {start, std::numeric_limits<double>::infinity()}, nullptr};
    const bool is_set = nlopt_set_min_objective(made.get(), evaluate, &seen) > 0 &&
                        nlopt_set_xtol_abs1(made.get(), limits.step) > 0 &&
                        nlopt_set_ftol_rel(made.get(), limits.relative_value) > 0 &&
                        nlopt_set_maxeval(made.get(), limits.evaluations) > 0 &&
                        (first_step.empty() || nlopt_set_initial_step(made.get(), first_step.data()) > 0);
    if (!is_set) throw std::bad_alloc{};
    double value = 0;
    // Its result is of no use: a search that ends for lack of precision reports a failure and has found the minimum.
    nlopt_optimize(made.get(), start.data(), &value);
    if (seen.thrown) std::rethrow_exception(seen.thrown);
    return seen.best;
}

}  // namespace

minimum descend(const differentiable& function, std::vector<double> start, const search_limits& limits)
{
    return run(NLOPT_LD_LBFGS, function, std::move(start), {}, limits);
}

minimum descend_without_gradient(const differentiable& function, std::vector<double> start,
                                 std::span<const double> first_step, const search_limits& limits)
{
    // BOBYQA needs two variables.
    const auto algorithm = start.size() < 2 ? NLOPT_LN_NELDERMEAD : NLOPT_LN_BOBYQA;
    return run(algorithm, function, std::move(start), first_step, limits);
}

}  // namespace zentrix::host
