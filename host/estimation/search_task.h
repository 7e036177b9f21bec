#pragma once

#include <optional>
#include <stdexcept>
#include <vector>

#include "host/estimation/band_model.h"
#include "host/estimation/estimate.h"

namespace zentrix::host {

/// What is asked of a search.
struct search_task
{
    const wave_spectrum& spectrum;
    lens::optics start;
    std::vector<lens::coefficient> free;
    std::optional<search_range> defocus;
    bool widths_are_known = false;

    double margin() const { return spectrum.edges_meet ? 0 : 0.2; }
    bool is_free(lens::coefficient which) const;

    /// The wave up to this part of the resolution of its signal.
    band_model model(double part, const imaging& at, const std::vector<unknown>& unknowns) const;
    /// The wave up to this frequency. [1/nm]
    band_model model_up_to(double frequency, const imaging& at, const std::vector<unknown>& unknowns) const;

    /// The change of C1 that changes chi by 1 rad at this frequency. [nm]
    double defocus_step(double frequency) const;
    /// Throws  range_too_wide if the range of C1 that was given has more than `most` of these steps
    void check_range(double step, int most) const;
};

/// Thrown when the range of C1 needs more starts than a search makes.
class range_too_wide : public std::invalid_argument
{
    using std::invalid_argument::invalid_argument;
};

/// Whether an unknown is of an odd coefficient. The contrast is even.
bool is_odd(const unknown& one);
/// Those that are odd, or those that are even, in their order.
std::vector<unknown> odd_of(const std::vector<unknown>& unknowns);
std::vector<unknown> even_of(const std::vector<unknown>& unknowns);

}  // namespace zentrix::host
