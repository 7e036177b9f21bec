#pragma once

#include <functional>
#include <string>

#include "host/parameters/parameter_set.h"
#include "host/program/parser.h"
#include "host/program/wave_file.h"
#include "lens/transfer.h"

/// Options of the commands that correct or aberrate a wave. The variables that they set must outlive `command`.
namespace zentrix::program {

/// A finite number above zero. The check of the parser accepts "nan", and its message is hard to read.
CLI::Validator positive_number();

/// As positive_number, within the limits of lens/plausible_units.h.
CLI::Validator voltage_in_kilovolts();
CLI::Validator pixel_in_nanometres();
CLI::Validator wavelength_in_nanometres();

/// Adds --kv, --wavelength and --pixel, which are those of the file if they are not given.
void add_microscope(CLI::App& command, host::parameter_set& parameters);

/// Adds --C1 NUMBER to --S5 MODULUS@DEGREES, one option per coefficient, in the units of the panel.
void add_coefficients(CLI::App& command, host::parameter_set& parameters);
/// The same with a function that gets the word for each option that is used. It may throw std::invalid_argument.
using coefficient_setter = std::function<void(lens::coefficient, const std::string&)>;
void add_coefficients(CLI::App& command, const coefficient_setter& set);

/// Adds --focus-spread, --convergence and --vibration, all rms.
void add_widths(CLI::App& command, host::parameter_set& parameters);
/// Adds --nan zero|mean.
void add_nan_option(CLI::App& command, nan_rule& rule);
/// The heading of the widths and of --envelope in --help.
extern const char* const widths_group;

}  // namespace zentrix::program
