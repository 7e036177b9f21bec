#pragma once

#include <string>

#include "host/program/parser.h"
#include "host/program/session.h"
#include "lens/transfer.h"

namespace zentrix::program {

/// Adds a command that reads a complex wave, multiplies its spectrum by the transfer function of the lens that the
/// options describe, and writes the result. Its options do not depend on `way`, but their defaults do: see
/// lens::damping.
/// global  is read when the command runs; must outlive `app`
void add_lens_command(CLI::App& app, const global_options& global, lens::direction way, const std::string& name,
                      const std::string& purpose);

}  // namespace zentrix::program
