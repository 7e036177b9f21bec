#pragma once

#include <CLI/CLI.hpp>

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
void add_panel_command(CLI::App& app, const global_options& global);
void add_convert_command(CLI::App& app, const global_options& global);
void add_estimate_command(CLI::App& app, const global_options& global);

}  // namespace zentrix::program
