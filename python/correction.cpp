#include "python/correction.h"

#include <pybind11/complex.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <memory>
#include <numbers>
#include <vector>

#include "host/correction/finite_pixels.h"
#include "host/correction/kept_spectrum.h"
#include "host/correction/multiply_spectrum.h"
#include "lens/electron.h"
#include "lens/plausible_units.h"
#include "lens/transfer.h"
#include "lens/transfer_value.h"
#include "python/arrays.h"
#include "python/interpreter_lock.h"
#include "python/session.h"

/// The package passes checked arrays: complex64, two dimensions, contiguous, writable.
namespace zentrix::python {

namespace {

/// (modulus in its unit, degrees) of all coefficients, in the order of lens::all_coefficients.
using coefficient_values = std::array<std::pair<double, double>, lens::coefficient_count>;

/// Units as in lens::optics.
lens::optics optics_of(double wavelength, double pixel, const coefficient_values& values,
                       const std::array<double, 3>& widths, std::complex<double> tilt)
{
    lens::optics setup{wavelength, pixel, {}, {widths[0], widths[1], widths[2]}, tilt};
    for (const auto& about : lens::all_coefficients) {
        const auto& [modulus, degrees] = values[static_cast<std::size_t>(about.which)];
        setup.lens[about.which] = {modulus, degrees};
    }
    return setup;
}

lens::damping damping_of(const std::string& word)
{
    if (word == "auto") return lens::damping::automatic;
    return word == "on" ? lens::damping::on : lens::damping::off;
}

lens::transfer_arguments arguments_for(const lens::optics& setup, const host::image& plane, bool remove,
                                       const std::string& envelope)
{
    return lens::arguments_for(setup, static_cast<int>(plane.size(0)), static_cast<int>(plane.size(1)),
                               remove ? lens::direction::remove : lens::direction::apply, damping_of(envelope));
}

/// Corrects `wave` in place.
void correct(session& host, const py::array& wave, const lens::optics& setup, bool remove, const std::string& envelope)
{
    const auto image = image_of(wave);
    const auto arguments = arguments_for(setup, *image, remove, envelope);
    host.run([&](host::engine& engine) { host::multiply_spectrum(engine, image, arguments); });
}

/// Multiplies `spectrum` in place by the transfer function.
void multiply_by_transfer(session& host, const py::array& spectrum, const lens::optics& setup, bool remove,
                          const std::string& envelope)
{
    const auto image = image_of(spectrum);
    const auto arguments = arguments_for(setup, *image, remove, envelope);
    host.run([&](host::engine& engine) { host::multiply_by_transfer(engine, image, image, arguments); });
}

/// The contrast transfer sin(chi) times envelope at the frequencies `q` [1/nm], each the mean over `directions`
/// [degrees].
std::vector<double> radial_contrast(const lens::optics& setup, const std::vector<double>& q,
                                    const std::vector<double>& directions, const std::string& envelope)
{
    const auto arguments = lens::arguments_for(setup, 2, 2, lens::direction::apply, damping_of(envelope));
    const interpreter_unlock others_may_run;
    std::vector<double> values;
    for (const double frequency : q) {
        double sum = 0;
        for (const double degrees : directions)
            sum -=
                lens::transfer_value(arguments, frequency * std::polar(1.0, degrees * std::numbers::pi / 180)).imag();
        values.push_back(sum / static_cast<double>(directions.size()));
    }
    return values;
}

/// Writes function(frequency) of each of the `frequencies`, contiguous complex128, to `values`, as many contiguous
/// elements.
template <typename Value, typename Function>
void write_at_each(const py::array& frequencies, py::array& values, const Function& function)
{
    if (values.size() != frequencies.size()) throw py::value_error{"As many values as frequencies are needed."};
    const auto* const first = static_cast<const std::complex<double>*>(frequencies.data());
    std::transform(first, first + frequencies.size(), static_cast<Value*>(values.mutable_data()), function);
}

/// The transfer function at complex `frequencies` [1/nm], real part right, imaginary part up on the displayed image.
/// values  complex128
void transfer_values(const lens::optics& setup, const py::array& frequencies, py::array values,
                     const std::string& envelope)
{
    const auto arguments = lens::arguments_for(setup, 2, 2, lens::direction::apply, damping_of(envelope));
    write_at_each<std::complex<double>>(frequencies, values,
                                        [&](auto frequency) { return lens::transfer_value(arguments, frequency); });
}

/// chi [rad], not wrapped, at frequencies as of transfer_values.
/// values  float64
void aberration_function(const lens::optics& setup, const py::array& frequencies, py::array values)
{
    const auto arguments = lens::arguments_for(setup, 2, 2, lens::direction::apply);
    write_at_each<double>(frequencies, values,
                          [&](auto frequency) { return lens::aberration_function(arguments, frequency); });
}

/// Replaces pixels that are not finite by 0 (rule "zero") or by the mean of the others (rule "mean"); any other rule
/// replaces nothing. Returns their number.
std::size_t replace_not_finite(const py::array& wave, const std::string& rule)
{
    const auto image = image_of(wave);
    const interpreter_unlock others_may_run;
    const std::size_t count = host::count_not_finite(*image);
    if (count > 0 && (rule == "zero" || rule == "mean"))
        host::replace_not_finite(*image, rule == "mean" ? host::mean_of_finite(*image) : std::complex<float>{});
    return count;
}

std::unique_ptr<host::kept_spectrum> keep_spectrum(session& host, const py::array& wave)
{
    const auto image = image_of(wave);
    return host.run([&](host::engine&) { return std::make_unique<host::kept_spectrum>(image); });
}

void multiply_kept(host::kept_spectrum& self, session& host, const py::array& destination, const lens::optics& setup,
                   bool remove, const std::string& envelope)
{
    const auto image = image_of(destination);
    if (static_cast<int>(image->size(0)) != self.width() || static_cast<int>(image->size(1)) != self.height())
        throw py::value_error{"The destination has another size than the wave."};
    const auto arguments = arguments_for(setup, *image, remove, envelope);
    host.run([&](host::engine& engine) { self.multiply(engine, arguments, image); });
}

const lens::coefficient_traits& traits_of(const std::string& name)
{
    for (const auto& about : lens::all_coefficients)
        if (about.name == name) return about;
    throw py::key_error{name};
}

/// (modulus, degrees) of a coefficient's text, "14@35".
std::pair<double, double> parse_coefficient(const std::string& name, const std::string& text)
{
    const auto value = lens::parse_coefficient(traits_of(name).which, text);
    return {value.modulus, value.angle_degrees};
}

/// name -> (meaning, unit, whether it has an angle)
py::dict coefficient_table()
{
    py::dict table;
    for (const auto& about : lens::all_coefficients)
        table[py::str(std::string{about.name})] =
            py::make_tuple(std::string{about.meaning}, std::string{about.unit}, about.symmetry != 0);
    return table;
}

}  // namespace

void add_correction(py::module_& to)
{
    py::class_<lens::optics>(to, "Optics").def(py::init(&optics_of));
    py::class_<host::kept_spectrum>(to, "Spectrum").def(py::init(&keep_spectrum)).def("multiply", &multiply_kept);
    to.def("electron_wavelength", &lens::electron_wavelength);
    to.def("check_kilovolts", &lens::check_kilovolts);
    to.def("check_pixel_size", &lens::check_pixel_size);
    to.def("check_wavelength", &lens::check_wavelength);
    to.def("coefficients", &coefficient_table);
    to.def("parse_coefficient", &parse_coefficient);
    to.def("replace_not_finite", &replace_not_finite);
    to.def("correct", &correct);
    to.def("multiply_by_transfer", &multiply_by_transfer);
    to.def("radial_contrast", &radial_contrast);
    to.def("transfer_values", &transfer_values);
    to.def("aberration_function", &aberration_function);
}

}  // namespace zentrix::python
