#include "host/estimation/phase_solution.h"

#include <cmath>

#include "host/estimation/phase_minima.h"

namespace zentrix::host {

namespace {

/// Adds what single precision leaves open, by how the coefficients of waves without noise scatter.
/// to_unknowns  from those variables [nm/rad]
void add_rounding(phase_solution& solution, const matrix& to_unknowns)
{
    constexpr double rounding = 2e-7;  // rad
    const matrix squares = to_unknowns * to_unknowns.transposed();
    for (std::size_t i = 0; i < squares.size(); ++i) {
        solution.chi_covariance(i, i) += rounding * rounding;
        for (std::size_t j = 0; j < squares.size(); ++j)
            solution.covariance(i, j) += rounding * rounding * squares(i, j);
    }
}

}  // namespace

void describe(phase_solution& solution, const search_task& task, const band_model& last, const band_model& of,
              const stationary_point& found, const std::vector<std::vector<double>>& shifts)
{
    const auto& unknowns = of.unknowns();
    const std::size_t n = unknowns.size();
    solution.unknowns = unknowns;
    solution.lens = of.imaging_at(found.at);
    const matrix back = matrix_of(n, [&](const auto& axis) { return of.to_nanometres(axis); });
    const matrix to_chi = matrix_of(n, [&](const auto& axis) { return last.to_variables(axis); });
    solution.covariance = back * found.covariance * back.transposed();
    solution.chi_covariance = to_chi * solution.covariance * to_chi.transposed();
    const matrix to_unknowns = matrix_of(n, [&](const auto& axis) { return last.to_nanometres(axis); });
    add_rounding(solution, to_unknowns);
    solution.chi_of_shifts = matrix{n};
    for (const auto& shift : shifts) {
        const auto chi = to_chi * shift;
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j) {
                solution.covariance(i, j) += shift[i] * shift[j];
                solution.chi_of_shifts(i, j) += chi[i] * chi[j];
            }
    }
    constexpr double implausible = 5;
    for (std::size_t j = 0; j < n; ++j) {
        double sum = 0;
        for (std::size_t i = 0; i < n; ++i) sum += to_chi(i, j) * to_chi(i, j);
        solution.chi_per_unit.push_back(std::sqrt(sum));
        const bool is_free = unknowns[j].what != unknown::part::contrast;
        const double change = value_of(solution.lens, unknowns[j]) - value_of({task.start.lens}, unknowns[j]);
        if (is_free && std::abs(change) * std::sqrt(sum) > implausible * usual_chi(unknowns[j].which))
            solution.even_doubt = "the minimum is farther away than any lens is out of trim";
    }
}

}  // namespace zentrix::host
