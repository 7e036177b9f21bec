#pragma once

#include <optional>
#include <vector>

#include "host/estimation/matrix.h"
#include "host/estimation/sharpness.h"

namespace zentrix::host {

/// The covariance of the variables at a maximum of the sharpness, by how its derivatives scatter over the tiles of the
/// wave, as `settle` does it for the other criteria. [rad^2]
/// Returns  nothing if the sharpness does not fall in each direction
std::optional<matrix> covariance_at_maximum(sharpness& sharp, const std::vector<double>& at);

}  // namespace zentrix::host
