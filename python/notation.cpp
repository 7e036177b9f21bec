#include "python/notation.h"

#include <pybind11/stl.h>

#include <array>
#include <stdexcept>

#include "lens/notation.h"

namespace zentrix::python {

namespace {

namespace py = pybind11;

/// (modulus in its unit, degrees) of all coefficients, in the order of lens::all_coefficients.
using coefficient_values = std::array<std::pair<double, double>, lens::coefficient_count>;

lens::notation notation_of(const std::string& word)
{
    if (word == "polar") return lens::notation::polar;
    if (word == "cartesian") return lens::notation::cartesian;
    if (word == "corrector") return lens::notation::corrector;
    throw std::invalid_argument{"There is no notation " + word + "."};
}

lens::named_numbers to_notation(const coefficient_values& values, const std::string& to, double length, bool radians,
                                bool clockwise, double zero)
{
    lens::aberrations lens;
    for (const auto& about : lens::all_coefficients) {
        const auto& [modulus, degrees] = values[static_cast<std::size_t>(about.which)];
        lens[about.which] = {modulus, degrees};
    }
    return lens::to_notation(lens, notation_of(to), {length, radians, clockwise, zero});
}

coefficient_values from_notation(const lens::named_numbers& numbers, const std::string& from, double length,
                                 bool radians, bool clockwise, double zero)
{
    const auto lens = lens::from_notation(numbers, notation_of(from), {length, radians, clockwise, zero});
    coefficient_values values;
    for (const auto& about : lens::all_coefficients)
        values[static_cast<std::size_t>(about.which)] = {lens[about.which].modulus, lens[about.which].angle_degrees};
    return values;
}

}  // namespace

void add_notation(py::module_& to)
{
    to.def("to_notation", &to_notation);
    to.def("from_notation", &from_notation);
}

}  // namespace zentrix::python
