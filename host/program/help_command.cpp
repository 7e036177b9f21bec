#include <CLI/CLI.hpp>

#include "host/program/commands.h"

namespace zentrix::program {

void add_help_command(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand("help", "Explain a command");
    command->add_option("COMMAND", "Name of a command");
    command->footer("Example:\n  zentrix help correct");
}

}  // namespace zentrix::program
