#pragma once

#include <CLI/CLI.hpp>

#include "lens/transfer.h"

/// Options of the commands that correct or aberrate a wave. The variables that they set must outlive `command`.
namespace zentrix::program {

/// A finite number above zero. The check of the parser accepts "nan", and its message is hard to read.
CLI::Validator positive_number();

/// As positive_number, within the limits of lens/plausible_units.h.
CLI::Validator voltage_in_kilovolts();
CLI::Validator pixel_in_nanometres();

/// Adds --C1 NUMBER to --S5 MODULUS@DEGREES, one option per coefficient, in the units of the panel.
void add_coefficients(CLI::App& command, lens::aberrations& lens);

/// Adds --focus-spread, --convergence and --vibration, all rms.
void add_widths(CLI::App& command, lens::coherence& spread);
/// The heading of the widths and of --envelope in --help.
extern const char* const widths_group;

}  // namespace zentrix::program
