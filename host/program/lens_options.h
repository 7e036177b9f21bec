#pragma once

#include <CLI/CLI.hpp>

#include "lens/transfer.h"

/// Options of the commands that correct a wave for its lens. What they fill has to live as long as `command`.
namespace zentrix::program {

/// A number above zero; the parser's own check lets "nan" pass and answers a wrong number with all digits of the largest.
CLI::Validator positive_number();

/// --C1 NUMBER to --S5 MODULUS@DEGREES, an option for each coefficient in the panel's units.
void add_coefficients(CLI::App& command, lens::aberrations& lens);

/// --focus-spread, --convergence and --vibration, all rms.
void add_widths(CLI::App& command, lens::coherence& spread);
/// The heading under which --help has the widths; --envelope belongs there too.
extern const char* const widths_group;

}  // namespace zentrix::program
