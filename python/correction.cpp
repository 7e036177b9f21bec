#include "python/correction.h"

#include <pybind11/complex.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <map>

#include "host/correction/finite_pixels.h"
#include "host/correction/multiply_spectrum.h"
#include "lens/electron.h"
#include "lens/transfer.h"
#include "python/arrays.h"
#include "python/session.h"

namespace zentrix::python {

namespace {

/// Coefficient name -> (modulus in its unit, degrees).
using coefficients = std::map<std::string, std::pair<double, double>>;

lens::aberrations lens_of(const coefficients& values)
{
    lens::aberrations lens;
    for (const auto& about : lens::all_coefficients)
        if (const auto found = values.find(std::string{about.name}); found != values.end())
            lens[about.which] = {found->second.first, found->second.second};
    return lens;
}

lens::damping damping_of(const std::string& word)
{
    if (word == "auto") return lens::damping::automatic;
    if (word == "on") return lens::damping::on;
    if (word == "off") return lens::damping::off;
    throw py::value_error{"The envelope is \"auto\", \"on\" or \"off\", not \"" + word + "\"."};
}

/// Replaces pixels that are infinite or not a number by the rule "zero" or "mean"; the rule "refuse" raises ValueError.
void replace_bad_pixels(host::image& wave, const std::string& rule)
{
    if (rule != "refuse" && rule != "zero" && rule != "mean")
        throw py::value_error{"nan is \"refuse\", \"zero\" or \"mean\", not \"" + rule + "\"."};
    const std::size_t count = host::count_not_finite(wave);
    if (count == 0) return;
    if (count == wave.count()) throw py::value_error{"No pixel of the wave is a finite number."};
    if (rule == "refuse")
        throw py::value_error{
            std::to_string(count) + " of " + std::to_string(wave.count()) +
            " pixels of the wave are infinite or not a number; nan=\"zero\" or \"mean\" replaces them."};
    host::replace_not_finite(wave, rule == "mean" ? host::mean_of_finite(wave) : std::complex<float>{});
}

/// Corrects `wave` in place. Units as in lens::optics.
void correct(session& host, const py::array& wave, double wavelength, double pixel, const coefficients& lens,
             const std::array<double, 3>& spread, std::complex<double> tilt, bool remove, const std::string& envelope,
             const std::string& nan)
{
    const lens::optics optics{wavelength, pixel, lens_of(lens), {spread[0], spread[1], spread[2]}, tilt};
    const auto direction = remove ? lens::direction::remove : lens::direction::apply;
    const auto image = image_of(wave);
    replace_bad_pixels(*image, nan);
    const auto arguments = lens::arguments_for(optics, static_cast<int>(image->size(0)),
                                               static_cast<int>(image->size(1)), direction, damping_of(envelope));
    host.run([&](host::engine& engine) { host::multiply_spectrum(engine, image, arguments); });
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
    to.def("electron_wavelength", &lens::electron_wavelength);
    to.def("coefficients", &coefficient_table);
    to.def("correct", &correct);
}

}  // namespace zentrix::python
