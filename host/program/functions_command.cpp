#include <iostream>

#include "host/program/commands.h"
#include "host/program/json.h"

namespace zentrix::program {

void add_functions_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command =
        app.add_subcommand("functions", "List the prototypes of the library's script functions, one a line");
    command->callback([&global] {
        session zentrix{global};
        const auto prototypes = zentrix.engine().functions().prototypes(host::origin::library);
        std::vector<std::string> quoted;
        for (const auto& prototype : prototypes) {
            if (!global.json) std::cout << prototype << '\n';
            quoted.push_back(json_string(prototype));
        }
        if (global.json) std::cout << json_array(quoted) << '\n';
    });
}

}  // namespace zentrix::program
