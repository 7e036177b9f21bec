#pragma once

#include "host/program/parser.h"
#include "host/program/session.h"

/// One function per command: adds it to the command line with its callback. `global` is read when the command runs and
/// must outlive `app`.
namespace zentrix::program {

void add_functions_command(CLI::App& app, const global_options& global);
void add_call_command(CLI::App& app, const global_options& global);
void add_info_command(CLI::App& app, const global_options& global);
void add_correct_command(CLI::App& app, const global_options& global);
void add_aberrate_command(CLI::App& app, const global_options& global);
void add_unwrap_command(CLI::App& app, const global_options& global);
void add_hologram_command(CLI::App& app, const global_options& global);
void add_ctf_command(CLI::App& app, const global_options& global);
/// "fft" and "ifft".
void add_fft_commands(CLI::App& app, const global_options& global);
void add_panel_command(CLI::App& app, const global_options& global);
void add_convert_command(CLI::App& app, const global_options& global);
void add_estimate_command(CLI::App& app, const global_options& global);
/// "help COMMAND"; main.cpp replaces it by "COMMAND --help" before the words are parsed.
void add_help_command(CLI::App& app);

}  // namespace zentrix::program
