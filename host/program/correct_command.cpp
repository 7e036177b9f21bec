#include "host/program/commands.h"
#include "host/program/lens_command.h"

namespace zentrix::program {

void add_correct_command(CLI::App& app, const global_options& global)
{
    add_lens_command(app, global, lens::direction::remove, "correct", "Remove lens aberrations from a complex wave");
}

}  // namespace zentrix::program
