#pragma once

#include <string>

namespace zentrix::program {

/// A hint for an option that other programs have: "defocus" gives how to write it as --C1, with its sign.
/// name  without hyphens, in any case; '_' and '-' are the same
/// Returns nothing for names that are not known.
std::string hint_for_other_name(const std::string& name);

/// The same for a command: "simulate" gives "zentrix aberrate".
std::string hint_for_other_command(const std::string& name);

}  // namespace zentrix::program
