#pragma once

#include <string>
#include <vector>

#include "host/program/parser.h"

/// The options of the parser's tree, for texts that are made from it.
namespace zentrix::program {

/// {"-o", "--output"}
std::vector<std::string> names_of(const CLI::Option& option);

/// "FILE", "NUMBER"; empty for a flag.
std::string value_of(const CLI::Option& option);

/// The words that the option accepts, if it accepts only some: {"on", "off"}. Otherwise nothing.
std::vector<std::string> choices_of(const CLI::Option& option);

/// Whether its value is the name of a file or a folder.
bool takes_file(const CLI::Option& option);

/// Options that --help shows, without arguments and those of the whole program.
std::vector<const CLI::Option*> own_options(const CLI::App& command);
/// Arguments without a name, such as WAVE.
std::vector<const CLI::Option*> arguments_of(const CLI::App& command);

/// The text with each occurrence of `from` replaced.
std::string replaced(std::string text, const std::string& from, const std::string& to);

/// Gives --help the same value names.
void set_value_names(CLI::App& app);

}  // namespace zentrix::program
