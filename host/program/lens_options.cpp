#include "host/program/lens_options.h"

#include <CLI/CLI.hpp>

#include "host/program/session.h"
#include "lens/numbers.h"
#include "lens/plausible_units.h"

namespace zentrix::program {

namespace {

CLI::Validator finite_number(const char* expected, const char* type_name, bool accepts_zero)
{
    const auto check = [=](const std::string& word) -> std::string {
        const auto number = lens::parse_number(word);
        const bool fits = number && (*number > 0 || (accepts_zero && *number == 0));
        return fits ? "" : std::string{"expected "} + expected + ", not \"" + word + "\"";
    };
    return CLI::Validator{check, type_name};
}

/// A positive number that `check` accepts.
CLI::Validator plausible_number(void (*check)(double))
{
    const auto find_problem = [check](const std::string& word) -> std::string {
        if (std::string problem = positive_number()(word); !problem.empty()) return problem;
        try {
            check(*lens::parse_number(word));
        } catch (const std::invalid_argument& problem) {
            return problem.what();
        }
        return "";
    };
    return CLI::Validator{find_problem, "POSITIVE"};
}

}  // namespace

const char* const widths_group = "Envelope: rms widths. 1/e half-width = rms * 1.4142, FWHM = rms * 2.3548";

CLI::Validator positive_number() { return finite_number("a positive number", "POSITIVE", false); }

CLI::Validator voltage_in_kilovolts() { return plausible_number(lens::check_kilovolts); }

CLI::Validator wavelength_in_nanometres() { return plausible_number(lens::check_wavelength); }

CLI::Validator pixel_in_nanometres() { return plausible_number(lens::check_pixel_size); }

void add_microscope(CLI::App& command, host::parameter_set& parameters)
{
    auto* const voltage = command.add_option("--kv", parameters.kilovolts,
                                             "Accelerating voltage [kV] (default: that of the file); or --wavelength");
    voltage->check(voltage_in_kilovolts());
    command.add_option("--wavelength", parameters.wavelength_nm, "Wavelength [nm], for waves other than electrons")
        ->check(wavelength_in_nanometres())
        ->excludes(voltage);
    command.add_option("--pixel", parameters.pixel_nm, "Pixel size [nm] (default: that of the file)")
        ->check(pixel_in_nanometres());
}

void add_coefficients(CLI::App& command, const coefficient_setter& set)
{
    for (const auto& about : lens::all_coefficients) {
        const auto set_this = [set, which = about.which](const std::string& word) {
            try {
                set(which, word);
            } catch (const std::invalid_argument& problem) {
                throw usage_error{problem.what()};
            }
        };
        command
            .add_option_function<std::string>("--" + std::string{about.name}, set_this,
                                              std::string{about.meaning} + " [" + std::string{about.unit} + "]")
            ->type_name(about.symmetry == 0 ? "NUMBER" : "MODULUS@DEGREES")
            ->group("Aberrations, angles counter-clockwise on the displayed image");
    }
}

void add_coefficients(CLI::App& command, host::parameter_set& parameters)
{
    add_coefficients(command, [&parameters](lens::coefficient which, const std::string& word) {
        parameters.coefficients[which] = lens::parse_coefficient(which, word);
    });
}

void add_widths(CLI::App& command, host::parameter_set& parameters)
{
    const struct
    {
        const char *name, *meaning;
        std::optional<double>& width;
    } widths[] = {{"--focus-spread", "Focus spread, rms [nm]", parameters.focus_spread_nm},
                  {"--convergence", "Beam convergence, rms along each axis [mrad]", parameters.convergence_mrad},
                  {"--vibration", "Vibration, rms along each axis [nm]", parameters.vibration_nm}};
    for (const auto& [name, meaning, width] : widths)
        command.add_option(name, width, meaning)
            ->check(finite_number("a number of 0 or more", "NONNEGATIVE", true))
            ->group(widths_group);
}

void add_nan_option(CLI::App& command, nan_rule& rule)
{
    command
        .add_option_function<std::string>(
            "--nan", [&](const std::string& word) { rule = word == "zero" ? nan_rule::zero : nan_rule::mean; },
            "Replace pixels that are infinite or not a number by 0 or by the mean of the others (default: refuse them)")
        ->check(CLI::IsMember({"zero", "mean"}).description(""))
        ->type_name("zero|mean");
}

}  // namespace zentrix::program
