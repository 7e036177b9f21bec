#include "host/program/help/option_facts.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

namespace zentrix::program {

namespace {

/// What the parser calls numbers.
constexpr std::array types_of_numbers{"FLOAT", "FLOAT:POSITIVE", "FLOAT:NONNEGATIVE", "INT", "UINT"};

}  // namespace

std::vector<std::string> names_of(const CLI::Option& option)
{
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
    return names;
}

std::string value_of(const CLI::Option& option)
{
    if (option.get_items_expected_max() == 0) return "";
    const std::string type = option.get_type_name();
    return std::ranges::find(types_of_numbers, type) != types_of_numbers.end() ? "NUMBER" : type;
}

std::vector<std::string> choices_of(const CLI::Option& option)
{
    // The parser has no list of the words, but its check names them: "? not in {on,off}".
    const std::string mark = " not in {";
    std::string said;
    try {
        std::string word = "?";
        said = (*const_cast<CLI::Option&>(option).get_validator(0))(word);  // it changes nothing but the word
    } catch (const CLI::OptionNotFound&) {
        return {};
    }
    const auto begin = said.find(mark), end = said.rfind('}');
    if (begin == std::string::npos || end == std::string::npos) return {};
    return CLI::detail::split(said.substr(begin + mark.size(), end - begin - mark.size()), ',');
}

bool takes_file(const CLI::Option& option)
{
    const std::string value = value_of(option);
    return value.find("FILE") != std::string::npos || value.find("FOLDER") != std::string::npos;
}

std::vector<const CLI::Option*> own_options(const CLI::App& command)
{
    return command.get_options(
        [](const CLI::Option* option) { return option->nonpositional() && !option->get_group().empty(); });
}

std::vector<const CLI::Option*> arguments_of(const CLI::App& command)
{
    return command.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

void set_value_names(CLI::App& app)
{
    for (const char* type : types_of_numbers) app.get_formatter()->label(type, "NUMBER");
    app.get_formatter()->label("REQUIRED", "(required)");
}

}  // namespace zentrix::program
