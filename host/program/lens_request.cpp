#include "host/program/lens_request.h"

#include <cmath>
#include <stdexcept>

#include "host/text/number_text.h"
#include "lens/plausible_units.h"

namespace zentrix::program {

namespace {

using host::number_text;

/// A quantity of the wave's file, or the reason why it cannot be used.
struct found
{
    std::optional<double> value;
    std::string problem;
};

found checked(double value, void (*check)(double))
{
    try {
        check(value);
        return {value, ""};
    } catch (const std::invalid_argument& problem) {
        return {std::nullopt, problem.what()};
    }
}

found pixel_of(const host::calibration& scale)
{
    const auto& [x, y, z] = scale.axes;
    if (x.step == 0 && y.step == 0) return {std::nullopt, "the file does not contain it"};
    for (const host::axis_scale& axis : {x, y})
        if (host::nanometres_in(axis.unit) == 0)
            return {std::nullopt, axis.unit.empty()
                                      ? "the scale of the file has no unit"
                                      : "\"" + axis.unit + "\", the unit of the file's scale, is not a length"};
    const double size = host::square_pixel_nm(scale);
    if (size > 0) return checked(size, lens::check_pixel_size);
    return {std::nullopt, "the file has pixels of " + number_text(x.step) + " " + x.unit + " x " + number_text(y.step) +
                              " " + y.unit + ", which are not square"};
}

found voltage_of(const host::calibration& scale)
{
    if (scale.kilovolts == 0) return {std::nullopt, "the file does not contain the voltage"};
    return checked(scale.kilovolts, lens::check_kilovolts);
}

/// "zentrix: wave.mrc: pixel 0.02 nm is used, the file has 0.025 nm"
std::string note_on_difference(const std::string& wave, const char* what, const std::optional<double>& used,
                               const std::optional<double>& in_file, const char* unit)
{
    if (!used || !in_file || std::abs(*used - *in_file) <= 1e-5 * std::abs(*in_file)) return "";
    return "zentrix: " + wave + ": " + what + " " + number_text(*used) + " " + unit + " is used, the file has " +
           number_text(*in_file) + " " + unit + "\n";
}

}  // namespace

settled_parameters settle(const lens_request& request, const std::string& wave, const host::calibration& scale)
{
    const found pixel = pixel_of(scale), voltage = voltage_of(scale);
    const host::parameter_set named = host::overlaid(request.given, request.from_file);
    host::parameter_set own;
    own.pixel_nm = pixel.value;
    own.kilovolts = voltage.value;
    settled_parameters settled{host::overlaid(named, own), "", ""};
    const host::parameter_set& used = settled.parameters;
    if (!used.pixel_nm) throw usage_error{wave + ": --pixel is required: " + pixel.problem};
    if (!used.kilovolts && !used.wavelength_nm)
        throw usage_error{wave + ": --kv or --wavelength is required: " + voltage.problem};

    const auto add_origin = [&](const std::string& what, bool on_command_line, bool in_file_of_parameters) {
        if (on_command_line) return;
        settled.origin += (settled.origin.empty() ? "" : ", ") + what + " from " +
                          (in_file_of_parameters ? request.parameter_file : wave);
    };
    add_origin("pixel " + number_text(*used.pixel_nm) + " nm", request.given.pixel_nm.has_value(),
               request.from_file.pixel_nm.has_value());
    add_origin(used.kilovolts ? number_text(*used.kilovolts) + " kV" : "wavelength",
               request.given.kilovolts || request.given.wavelength_nm,
               request.from_file.kilovolts || request.from_file.wavelength_nm);
    settled.notes = note_on_difference(wave, "pixel", used.pixel_nm, pixel.value, "nm") +
                    note_on_difference(wave, "voltage", used.kilovolts, voltage.value, "kV");
    return settled;
}

host::calibration scale_of_result(const host::calibration& of_wave, const host::parameter_set& used)
{
    host::calibration scale = of_wave;
    const double pixel = used.pixel_nm.value_or(0);
    if (std::abs(host::square_pixel_nm(of_wave) - pixel) > 1e-9 * pixel)
        scale.axes[0] = scale.axes[1] = {pixel, 0, "nm"};
    scale.kilovolts = used.kilovolts.value_or(0);
    return scale;
}

}  // namespace zentrix::program
