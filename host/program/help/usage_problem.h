#pragma once

#include <string>
#include <vector>

#include "host/program/parser.h"

namespace zentrix::program {

/// The commands of --help.
std::vector<const CLI::App*> visible_commands(const CLI::App& app);
/// The options of a command and of the whole program, as --help shows them.
std::vector<const CLI::Option*> visible_options(const CLI::App& command);

/// The first word that is no option and no value of an option of the whole program: the command. Its index, or the
/// number of words.
std::size_t index_of_command(const std::vector<std::string>& words);

/// "\"-output\" needs two hyphens: --output" for the first word that is a long option with a single hyphen, which the
/// parser takes for the option -o with the value "utput". Empty if there is none.
std::string single_hyphen(const CLI::App& app, const std::vector<std::string>& words);

/// What is wrong with a command line, in a sentence without a full stop or "zentrix:". It names an unknown command or
/// option first, before what is missing, and what was probably meant.
/// app      after parsing
/// words    the command line without the program's name, in its order
/// problem  what the parser reported; a call for help if the command is unknown
std::string explain(const CLI::App& app, const std::vector<std::string>& words, const CLI::Error& problem);

}  // namespace zentrix::program
