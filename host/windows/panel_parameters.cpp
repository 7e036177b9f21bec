#include "host/windows/panel_parameters.h"

#include <cmath>
#include <stdexcept>

namespace zentrix::host {

parameter_set parameters_of(const lens::aberrations& lens, const microscope& scope)
{
    parameter_set set;
    set.kilovolts = scope.kilovolts;
    set.pixel_nm = scope.pixel_nm;
    for (const auto& about : lens::all_coefficients)
        if (lens[about.which].modulus != 0) set.coefficients[about.which] = lens[about.which];
    const auto if_not_zero = [](double width) { return width == 0 ? std::nullopt : std::optional{width}; };
    set.focus_spread_nm = if_not_zero(scope.spread.focus_spread_nm);
    set.convergence_mrad = if_not_zero(scope.spread.convergence_mrad);
    set.vibration_nm = if_not_zero(scope.spread.vibration_nm);
    set.envelope = scope.damped ? lens::damping::on : lens::damping::off;
    return set;
}

panel_parameters for_panel(const parameter_set& set, const microscope& present)
{
    if (set.wavelength_nm)
        throw std::invalid_argument{"The panel needs the accelerating voltage (kv) and not the wavelength."};
    if (set.tilt_mrad.value_or(0.0) != 0.0) throw std::invalid_argument{"The panel has no beam tilt (tilt)."};
    panel_parameters shown{{}, present, {}};
    std::string rounded;
    for (auto [which, value] : set.coefficients) {
        const double degrees = std::round(value.angle_degrees);
        if (degrees != value.angle_degrees)
            rounded += (rounded.empty() ? "" : ", ") + std::string{lens::traits(which).name};
        shown.lens[which] = {value.modulus, degrees};
    }
    if (!rounded.empty()) shown.note = "The panel has whole degrees. These angles were rounded: " + rounded + ".";
    microscope& scope = shown.scope;
    scope.kilovolts = set.kilovolts.value_or(present.kilovolts);
    scope.pixel_nm = set.pixel_nm.value_or(present.pixel_nm);
    scope.spread.focus_spread_nm = set.focus_spread_nm.value_or(present.spread.focus_spread_nm);
    scope.spread.convergence_mrad = set.convergence_mrad.value_or(present.spread.convergence_mrad);
    scope.spread.vibration_nm = set.vibration_nm.value_or(present.spread.vibration_nm);
    if (set.envelope) scope.damped = *set.envelope == lens::damping::on;
    return shown;
}

}  // namespace zentrix::host
