#include "host/estimation/search_task.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <numbers>

#include "lens/aberration_basis.h"

namespace zentrix::host {

bool search_task::is_free(lens::coefficient which) const { return std::ranges::find(free, which) != free.end(); }

band_model search_task::model(double part, const imaging& at, const std::vector<unknown>& unknowns) const
{
    return model_up_to(part * spectrum.signal_resolution, at, unknowns);
}

band_model search_task::model_up_to(double frequency, const imaging& at, const std::vector<unknown>& unknowns) const
{
    return {spectrum, frequency, start, at, unknowns, margin()};
}

double search_task::defocus_step(double frequency) const
{
    return 1 / (std::numbers::pi * start.wavelength_nm * frequency * frequency);
}

void search_task::check_range(double step, int most) const
{
    if (!defocus || !is_free(lens::coefficient::C1) || (defocus->highest - defocus->lowest) / step <= most) return;
    const double widest = most * step, digit = std::pow(10, std::floor(std::log10(widest)) - 1);
    char text[120];
    std::snprintf(text, sizeof text,
                  "The range of C1 is too wide: at the resolution of this wave it may be %.12g nm wide.",
                  std::floor(widest / digit) * digit);
    throw range_too_wide{text};
}

bool is_odd(const unknown& one) { return one.what != unknown::part::contrast && !lens::is_even(one.which); }

std::vector<unknown> odd_of(const std::vector<unknown>& unknowns)
{
    std::vector<unknown> odd;
    std::ranges::copy_if(unknowns, std::back_inserter(odd), is_odd);
    return odd;
}

std::vector<unknown> even_of(const std::vector<unknown>& unknowns)
{
    std::vector<unknown> even;
    std::ranges::remove_copy_if(unknowns, std::back_inserter(even), is_odd);
    return even;
}

}  // namespace zentrix::host
