#pragma once

#include <string>

#include "host/program/parser.h"

namespace zentrix::program {

/// The manual page in the macros of man(7), made from the texts of --help. All characters are ASCII.
std::string man_page(const CLI::App& app);

/// Adds the hidden command "man", which prints man_page. `app` must outlive the parsing.
void add_man_command(CLI::App& app);

}  // namespace zentrix::program
