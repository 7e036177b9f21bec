#pragma once

#include <vector>

#include "host/estimation/certainty.h"
#include "host/estimation/search_task.h"

namespace zentrix::host {

/// What a wrong damping envelope moves a stationary point by, one vector for each way in which it may be wrong; each is
/// one standard deviation and independent of the others. Neither criterion shows a wrong envelope: for a weak phase
/// object, a wave that is damped more is still one of a phase object, with less resolution.
///   widths known      each of them wrong by a tenth
///   widths not known  the amplitude at the resolution damped to 1/e by a focus spread, and the same by a vibration
/// model    of the whole band, with the widths of the task
/// found    of that model, with the same criteria
/// Returns  changes of the model's variables [rad]
std::vector<std::vector<double>> envelope_shifts(search_run& run, const search_task& task, const band_model& model,
                                                 const deciding& decides, const stationary_point& found);

}  // namespace zentrix::host
