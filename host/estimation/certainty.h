#pragma once

#include <optional>
#include <vector>

#include "host/estimation/band_model.h"
#include "host/estimation/matrix.h"
#include "host/estimation/search_run.h"

namespace zentrix::host {

/// The criterion that decides a variable.
using deciding = std::vector<criterion>;
/// The variance of the modulus for the even variables, and this criterion for the odd ones.
deciding deciding_by(const band_model& model, criterion odd);

/// Where the derivatives of the deciding criteria vanish, and how sure that is.
struct stationary_point
{
    std::vector<double> at;         ///< variables of the model
    matrix covariance;              ///< of the variables [rad^2]
    matrix inverse;                 ///< of the second derivatives
    std::vector<bool> is_extremum;  ///< for each variable, that its criterion is a minimum or maximum along it
    double variance = 0, skewness = 0;
};

/// Goes from `start`, a point near it, to the stationary point by Newton steps and estimates the covariance: the
/// derivative is a sum over tiles of the wave, and how it scatters from tile to tile shows its error, whatever the
/// reason: noise, or an object that is not what the criterion assumes.
/// decides  for each variable
/// Returns  nothing where the derivatives are singular, the steps lead away, or the search was stopped
/// Source   the covariance of an estimate that solves equations: Huber, Proc. 5th Berkeley Symp. 1 (1967) 221-233; over
///          clusters: Liang, Zeger, Biometrika 73 (1986) 13-22
std::optional<stationary_point> settle(search_run& run, const band_model& model, const deciding& decides,
                                       std::vector<double> start);

/// How many standard deviations the variance of the modulus is smaller at `a` than at `b`, by how its difference
/// scatters from tile to tile. Both are variables of the model.
/// Source  the comparison of models that both may be wrong: Vuong, Econometrica 57 (1989) 307-333
double superiority(band_evaluator& evaluate, const band_model& model, std::span<const double> a,
                   std::span<const double> b);

}  // namespace zentrix::host
