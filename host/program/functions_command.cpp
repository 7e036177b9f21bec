#include <iostream>

#include "host/program/commands.h"
#include "host/program/json.h"

namespace zentrix::program {

void add_functions_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command =
        app.add_subcommand("functions", "List the prototypes of the library's script functions, one per line");
    command->callback([&global] {
        session zentrix{global};
        const auto prototypes = zentrix.engine().functions().prototypes(host::origin::library);
        if (global.json) return print(json(prototypes));
        for (const auto& prototype : prototypes) std::cout << prototype << '\n';
    });
}

}  // namespace zentrix::program
