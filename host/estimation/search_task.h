#pragma once

#include <optional>
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
};

/// Whether an unknown is of an odd coefficient. The contrast is even.
bool is_odd(const unknown& one);

}  // namespace zentrix::host
