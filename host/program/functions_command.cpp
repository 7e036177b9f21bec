#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <iostream>

#include "host/program/commands.h"
#include "host/program/function_name.h"
#include "host/program/json.h"

namespace zentrix::program {

namespace {

std::string in_lower_case(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// Those whose names contain the text, in any case. Throws  host::script_error if there is none
std::vector<std::string> chosen_prototypes(const host::function_table& functions, const std::string& text)
{
    auto prototypes = functions.prototypes(host::origin::library);
    std::erase_if(prototypes, [&](const std::string& prototype) {
        return in_lower_case(prototype.substr(0, prototype.find('('))).find(in_lower_case(text)) == std::string::npos;
    });
    if (!prototypes.empty() || text.empty()) return prototypes;
    const std::string near = full_function_name(functions, text);  // throws, unless it is a function of the host
    throw host::script_error{near + " is a function of the host, not of the library"};
}

}  // namespace

void add_functions_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command =
        app.add_subcommand("functions", "List the prototypes of the library's script functions, one per line");
    auto text = std::make_shared<std::string>();
    command->add_option("TEXT", *text, "Only those with this text in their name, in any case");
    command->footer(
        "Examples:\n  zentrix functions\n  zentrix functions median\n\n"
        "docs/script-reference.md explains each function.");
    command->callback([&global, text] {
        session zentrix{global};
        const auto prototypes = chosen_prototypes(zentrix.engine().functions(), *text);
        if (global.json) return print(json(prototypes));
        for (const auto& prototype : prototypes) std::cout << prototype << '\n';
    });
}

}  // namespace zentrix::program
