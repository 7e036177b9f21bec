#include "host/program/commands.h"
#include "host/program/lens_command.h"

namespace zentrix::program {

void add_aberrate_command(CLI::App& app, const global_options& global)
{
    add_lens_command(app, global, lens::direction::apply, "aberrate", "Apply lens aberrations to a complex wave");
}

}  // namespace zentrix::program
