#include "host/program/help/usage_problem.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>
#include <regex>

#include "host/program/argument.h"
#include "host/program/help/near_word.h"
#include "host/program/help/other_names.h"
#include "host/text/number_text.h"

namespace zentrix::program {

namespace {

std::string quoted(const std::string& word) { return '"' + word + '"'; }

bool is_number(const std::string& word) { return host::parse_number<double>(word).has_value(); }

bool looks_like_option(const std::string& word) { return word.size() > 1 && word[0] == '-' && !is_number(word); }

/// "--C1" for an option with that name.
std::vector<std::string> long_names(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : visible_options(command))
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

/// The words of a list with commas and "or".
std::string any_of(const std::vector<std::string>& words)
{
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i)
        text += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
    return text;
}

const CLI::App* subcommand_named(const CLI::App& app, const std::string& name)
{
    const auto found = app.get_subcommands([&](const CLI::App* command) { return command->get_name() == name; });
    return found.empty() ? nullptr : found.front();
}

std::string list_of_commands(const CLI::App& app)
{
    std::string names;
    for (const CLI::App* command : visible_commands(app)) names += (names.empty() ? "" : ", ") + command->get_name();
    return names;
}

std::string unknown_command(const CLI::App& app, const std::string& word)
{
    std::vector<std::string> names;
    for (const CLI::App* command : visible_commands(app)) names.push_back(command->get_name());
    const std::string near = nearest_word(word, names);
    std::string text = "there is no command " + quoted(word);
    if (!near.empty()) return text + did_you_mean(near);
    if (const std::string hint = hint_for_other_command(word); !hint.empty()) return text + ". " + hint;
    if (word.starts_with("ZX")) return text + did_you_mean("\"zentrix call " + word + "\"");
    if (word.find('.') != std::string::npos) text += ": the command comes before the files";
    return text + "; the commands are " + list_of_commands(app);
}

/// An option that is written together with its number, as in --kv300: "--kv 300".
std::string with_separate_number(const std::string& bare, const CLI::App& command)
{
    for (const CLI::Option* option : visible_options(command))
        for (const std::string& name : option->get_lnames())
            if (bare.starts_with(name) && is_number(bare.substr(name.size())))
                return "--" + name + " " + bare.substr(name.size());
    return "";
}

/// Another command that has the option, with the command's name.
std::string command_with(const CLI::App& app, const std::string& option)
{
    for (const CLI::App* command : visible_commands(app))
        if (command->get_option_no_throw(option) != nullptr) return command->get_name();
    return "";
}

std::string unknown_option(const CLI::App& app, const CLI::App& command, const std::string& word)
{
    const std::string name = word.substr(0, word.find('='));
    const std::string bare = name.substr(std::min(name.find_first_not_of('-'), name.size()));
    std::string text = "there is no option " + name;
    const std::string near = nearest_word("--" + bare, long_names(command));
    if (differ_by_case_only(near, "--" + bare)) return text + did_you_mean(near);
    // Before names that are only similar: --focus is not meant as --focus-spread.
    if (const std::string hint = hint_for_other_name(bare); !hint.empty()) return text + ". " + hint;
    if (const std::string apart = with_separate_number(bare, command); !apart.empty())
        return text + did_you_mean(apart);
    if (const std::string other = command_with(app, name); !other.empty())
        return text + " of \"zentrix " + command.get_name() + "\"; \"zentrix " + other + "\" has it";
    return text + did_you_mean(near);
}

/// Words copied from a document have dashes or a minus sign instead of hyphens.
bool starts_with_dash(const std::string& word)
{
    return word.starts_with("\u2012") || word.starts_with("\u2013") || word.starts_with("\u2014") ||
           word.starts_with("\u2212");
}

std::string surplus_argument(const CLI::App& command, const std::vector<std::string>& words, const std::string& surplus)
{
    const std::size_t at = index_of_command(words);
    if (at < words.size() && words[at] != command.get_name())
        return quoted(words[at]) + " comes after the command: zentrix " + command.get_name() + " " + words[at];
    std::string text = "unexpected argument " + quoted(surplus);
    if (starts_with_dash(surplus)) return text + ": its dash is not a hyphen (-)";
    std::string expected;
    for (const CLI::Option* option : command.get_options([](const CLI::Option* o) { return o->get_positional(); }))
        expected += " " + option->get_name();
    return text + "; expected: zentrix " + command.get_name() + expected + " [OPTIONS]";
}

/// Of the words that no option and no command takes, the one to complain about; nothing if all are taken.
std::optional<std::string> leftover(const CLI::App& app)
{
    const auto words = app.remaining(true);
    const auto option = std::ranges::find_if(words, looks_like_option);
    if (option != words.end()) return unprotect_number(*option);
    return words.empty() ? std::nullopt : std::optional{unprotect_number(words.front())};
}

const CLI::Option* option_named(const CLI::App& command, const std::string& name)
{
    for (const CLI::App* app = &command; app != nullptr; app = app->get_parent())
        if (const CLI::Option* option = app->get_option_no_throw(name)) return option;
    return nullptr;
}

/// The name with its meaning: "--pixel (Pixel size [nm])". Of a long description only the beginning.
std::string with_meaning(const CLI::App& command, const std::string& name)
{
    constexpr std::size_t longest = 80;
    const CLI::Option* const option = option_named(command, name);
    std::string meaning = option == nullptr ? "" : option->get_description();
    if (meaning.size() > longest) meaning = meaning.substr(0, meaning.find_last_of(' ', longest)) + " ...";
    return meaning.empty() ? name : name + " (" + meaning + ")";
}

std::string expected_value(const CLI::Option* option)
{
    const std::string type = option == nullptr ? "" : option->get_type_name();
    if (type.starts_with("INT") || type.starts_with("UINT") || type == "NUMBER") return "a whole number";
    return type.starts_with("FLOAT") ? "a number" : "another value";
}

std::string with_decimal_point(const std::string& text)
{
    return std::regex_search(text, std::regex{"\"[-+]?[0-9]+,[0-9]+\""}) ? text + ": numbers have a decimal point"
                                                                         : text;
}

/// The parser's sentence in the words of this program. The patterns are those of CLI11 2.1 to 2.3.
std::string rephrased(const CLI::App& command, const std::string& said)
{
    std::smatch part;
    if (std::regex_match(said, part, std::regex{"(\\S+) is required"}))
        return part[1].str() + " is required" + with_meaning(command, part[1]).substr(part[1].length());
    if (std::regex_match(said, part, std::regex{"(\\S+): 1 required .* missing"}))
        return with_meaning(command, part[1]) + " needs a value";
    if (std::regex_match(said, part, std::regex{"(\\S+): At Most 1 required but received (\\d+)"}))
        return part[1].str() + " is given " + part[2].str() + " times; it takes one value";
    if (std::regex_match(said, part, std::regex{"(\\S+): Value (.*) not in range (.*) to (.*)"}))
        return part[1].str() + ": expected a number from " + part[3].str() + " to " + part[4].str() + ", not " +
               quoted(part[2]);
    if (std::regex_match(said, part, std::regex{"(\\S+) excludes (\\S+)"}))
        return part[1].str() + " and " + part[2].str() + " exclude each other; give one of them";
    if (std::regex_match(said, part, std::regex{"Could not convert: (\\S+) = (.*)"}))
        return with_decimal_point(part[1].str() + ": expected " + expected_value(option_named(command, part[1])) +
                                  ", not " + quoted(part[2]));
    if (std::regex_match(said, part, std::regex{"(\\S+): (.*) not in \\{(.*)\\}"})) {
        const auto choices = CLI::detail::split(part[3], ',');
        return part[1].str() + ": expected " + any_of(choices) + ", not " + quoted(part[2]) +
               did_you_mean(nearest_word(part[2], choices));
    }
    return with_decimal_point(said);
}

}  // namespace

std::vector<const CLI::App*> visible_commands(const CLI::App& app)
{
    return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

std::vector<const CLI::Option*> visible_options(const CLI::App& command)
{
    std::vector<const CLI::Option*> options;
    for (const CLI::App* app = &command; app != nullptr; app = app->get_parent())
        for (const CLI::Option* option : app->get_options())
            if (option->nonpositional() && !option->get_group().empty()) options.push_back(option);
    return options;
}

std::size_t index_of_command(const std::vector<std::string>& words)
{
    for (std::size_t i = 0; i < words.size(); ++i)
        if (words[i] == "--library" || words[i] == "--simd")
            ++i;
        else if (!looks_like_option(words[i]))
            return i;
    return words.size();
}

std::string single_hyphen(const CLI::App& app, const std::vector<std::string>& words)
{
    const std::size_t at = index_of_command(words);
    const CLI::App* const command = at < words.size() ? subcommand_named(app, words[at]) : nullptr;
    const auto names = long_names(command == nullptr ? app : *command);
    for (const std::string& word : words) {
        const std::string meant = "-" + word.substr(0, word.find('='));
        if (meant.size() > 3 && meant.starts_with("--") && std::ranges::find(names, meant) != names.end() &&
            word[1] != '-')
            return quoted(word) + " needs two hyphens: " + meant;
    }
    return "";
}

std::string explain(const CLI::App& app, const std::vector<std::string>& words, const CLI::Error& problem)
{
    const auto chosen = app.get_subcommands();
    const auto left = leftover(app);
    if (chosen.empty()) {
        const std::size_t at = index_of_command(words);
        if (at < words.size()) return unknown_command(app, words[at]);
        if (left) return unknown_option(app, app, *left);
        if (dynamic_cast<const CLI::RequiredError*>(&problem) == nullptr) return rephrased(app, problem.what());
        return "expected a command: " + list_of_commands(app);
    }
    const CLI::App& command = *chosen.front();
    if (left && looks_like_option(*left)) return unknown_option(app, command, *left);
    if (left) return surplus_argument(command, words, *left);
    return rephrased(command, problem.what());
}

}  // namespace zentrix::program
