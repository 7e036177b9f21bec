#include "host/estimation/search_task.h"

#include <algorithm>

#include "lens/aberration_basis.h"

namespace zentrix::host {

bool search_task::is_free(lens::coefficient which) const { return std::ranges::find(free, which) != free.end(); }

band_model search_task::model(double part, const imaging& at, const std::vector<unknown>& unknowns) const
{
    return {spectrum, part * spectrum.signal_resolution, start, at, unknowns, margin()};
}

bool is_odd(const unknown& one) { return one.what != unknown::part::contrast && !lens::is_even(one.which); }

}  // namespace zentrix::host
