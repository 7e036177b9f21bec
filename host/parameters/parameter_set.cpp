#include "host/parameters/parameter_set.h"

#include <stdexcept>

#include "lens/electron.h"

namespace zentrix::host {

namespace {

template <class T>
void fill(std::optional<T>& value, const std::optional<T>& other)
{
    if (!value) value = other;
}

}  // namespace

parameter_set overlaid(const parameter_set& over, const parameter_set& under)
{
    parameter_set both = over;
    if (!over.kilovolts && !over.wavelength_nm) {
        both.kilovolts = under.kilovolts;
        both.wavelength_nm = under.wavelength_nm;
    }
    both.coefficients.insert(under.coefficients.begin(), under.coefficients.end());  // those of `over` stay
    fill(both.pixel_nm, under.pixel_nm);
    fill(both.focus_spread_nm, under.focus_spread_nm);
    fill(both.convergence_mrad, under.convergence_mrad);
    fill(both.vibration_nm, under.vibration_nm);
    fill(both.tilt_mrad, under.tilt_mrad);
    fill(both.envelope, under.envelope);
    return both;
}

double wavelength_of(const parameter_set& parameters)
{
    if (parameters.wavelength_nm) return *parameters.wavelength_nm;
    if (parameters.kilovolts) return lens::electron_wavelength(*parameters.kilovolts);
    throw std::invalid_argument{"The accelerating voltage (kv) or the wavelength is missing."};
}

lens::optics optics_of(const parameter_set& parameters)
{
    const double wavelength = wavelength_of(parameters);
    if (!parameters.pixel_nm) throw std::invalid_argument{"The pixel size (pixel) is missing."};
    lens::optics optics;
    optics.wavelength_nm = wavelength;
    optics.pixel_nm = *parameters.pixel_nm;
    for (const auto& [which, value] : parameters.coefficients) optics.lens[which] = value;
    optics.spread = {parameters.focus_spread_nm.value_or(0), parameters.convergence_mrad.value_or(0),
                     parameters.vibration_nm.value_or(0)};
    optics.tilt_mrad = parameters.tilt_mrad.value_or(0);
    return optics;
}

}  // namespace zentrix::host
