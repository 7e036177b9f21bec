#pragma once

#include <string>

#include "host/program/parser.h"

namespace zentrix::program {

/// Scripts that complete commands, options, coefficients, choices, names of script functions and files.
std::string bash_completion(const CLI::App& app);
std::string zsh_completion(const CLI::App& app);

/// Adds the hidden command "completion bash|zsh", which prints them. `app` must outlive the parsing.
void add_completion_command(CLI::App& app);

}  // namespace zentrix::program
