#include "host/program/help/completion.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "host/program/help/option_facts.h"
#include "host/program/help/usage_problem.h"

namespace zentrix::program {

namespace {

std::string joined(const std::vector<std::string>& words, const std::string& between)
{
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
    return text;
}

std::vector<std::string> names_of_commands(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : visible_commands(app)) names.push_back(command->get_name());
    return names;
}

/// The shell's words for an argument that is not a file: names of commands or of script functions.
enum class argument_kind
{
    file,
    command,
    function,
    none
};

argument_kind kind_of(const CLI::App& command)
{
    if (command.get_name() == "help") return argument_kind::command;
    if (command.get_name() == "call" || command.get_name() == "functions") return argument_kind::function;
    return arguments_of(command).empty() ? argument_kind::none : argument_kind::file;
}

// The parts of the script for bash that do not depend on the commands. "$1" of each function is the command.

constexpr char bash_head[] = R"(# bash completion for zentrix. Made by "zentrix completion bash".

_zentrix_functions()
{
    "${COMP_WORDS[0]}" functions 2>/dev/null | sed -n 's/.* \(ZX[A-Za-z0-9_]*\)(.*/\1/p' | sort -u
}

_zentrix_words()
{
    COMPREPLY=($(compgen -W "$1" -- "$cur"))
    compopt +o default 2>/dev/null    # no file names
}

_zentrix()
{
    local cur="${COMP_WORDS[COMP_CWORD]}" prev="${COMP_WORDS[COMP_CWORD-1]}" command="" at i
    COMPREPLY=()
    if [ "$cur" = "=" ]; then
        cur=""
    elif [ "$prev" = "=" ]; then
        prev="${COMP_WORDS[COMP_CWORD-2]}"
    fi
)";

constexpr char bash_tail[] = R"(
complete -o default -F _zentrix zentrix
)";

/// Patterns for "COMMAND OPTION". An option of the whole program, with an empty command, may follow any command.
std::vector<std::string> patterns_of(const std::string& command, const CLI::Option& option)
{
    const std::string start = command.empty() ? "*\" " : "\"" + command + " ";
    std::vector<std::string> patterns = names_of(option);
    for (std::string& pattern : patterns) pattern.insert(0, start).append("\"");
    return patterns;
}

/// The branch of a case statement that completes the value of an option; nothing for flags and files.
std::string bash_value(const std::string& command, const CLI::Option& option)
{
    if (value_of(option).empty() || takes_file(option)) return "";
    return "        " + joined(patterns_of(command, option), "|") + ") _zentrix_words \"" +
           joined(choices_of(option), " ") + "\"; return ;;\n";
}

/// Values of file names: the shell completes them by itself.
std::string bash_file_value(const std::string& command, const CLI::Option& option)
{
    if (!takes_file(option)) return "";
    return "        " + joined(patterns_of(command, option), "|") + ") return ;;\n";
}

std::string bash_options(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : visible_options(command))
        for (const std::string& name : names_of(*option)) names.push_back(name);
    return joined(names, " ");
}

std::string bash_argument(const CLI::App& app, const CLI::App& command)
{
    switch (kind_of(command)) {
        case argument_kind::command: return "_zentrix_words \"" + joined(names_of_commands(app), " ") + "\"";
        case argument_kind::function:
            return "[ \"$((COMP_CWORD - at))\" -eq 1 ] && _zentrix_words \"$(_zentrix_functions)\"";
        case argument_kind::none: return "_zentrix_words \"\"";
        default: return ":";
    }
}

// zsh

/// Text between single quotes, without what _arguments would interpret.
std::string zsh_text(std::string text)
{
    text = replaced(replaced(text, "[", "("), "]", ")");
    return replaced(replaced(text, ":", "\\:"), "'", "'\\''");
}

std::string zsh_option(const CLI::Option& option)
{
    const auto names = names_of(option);
    const auto choices = choices_of(option);
    const std::string value = value_of(option);
    std::string action;
    if (!value.empty()) action = ":" + zsh_text(value) + ":";
    if (takes_file(option)) action += "_files";
    if (!choices.empty()) action += "(" + joined(choices, " ") + ")";
    const std::string about = "'[" + zsh_text(option.get_description()) + "]" + action + "'";
    if (names.size() == 1) return "'" + names.front() + about.substr(1);
    return "'(" + joined(names, " ") + ")'{" + joined(names, ",") + "}" + about;
}

std::string zsh_argument(const CLI::App& command)
{
    switch (kind_of(command)) {
        case argument_kind::command: return "'1:command:_zentrix_commands'";
        case argument_kind::function: return "'1:function:_zentrix_functions' '*:argument:_files'";
        case argument_kind::none: return "";
        default: return "'*:" + zsh_text(arguments_of(command).front()->get_name()) + ":_files'";
    }
}

std::string zsh_arguments(const CLI::App& command)
{
    std::string text = "_arguments -s";
    for (const CLI::Option* option : visible_options(command)) text += " \\\n                " + zsh_option(*option);
    const std::string argument = zsh_argument(command);
    return text + (argument.empty() ? "" : " \\\n                " + argument);
}

}  // namespace

std::string bash_completion(const CLI::App& app)
{
    std::string values, files, options, arguments;
    for (const CLI::App* command : visible_commands(app)) {
        for (const CLI::Option* option : own_options(*command)) {
            values += bash_value(command->get_name(), *option);
            files += bash_file_value(command->get_name(), *option);
        }
        options += "            " + command->get_name() + ") _zentrix_words \"" + bash_options(*command) + "\" ;;\n";
        arguments += "        " + command->get_name() + ") " + bash_argument(app, *command) + " ;;\n";
    }
    for (const CLI::Option* option : own_options(app)) {
        values += bash_value("", *option);
        files += bash_file_value("", *option);
    }
    const auto commands = names_of_commands(app);
    return bash_head +
           ("    for ((i = 1; i < COMP_CWORD; i++)); do\n        case \"${COMP_WORDS[i]}\" in\n            " +
            joined(commands, "|")) +
           ") command=\"${COMP_WORDS[i]}\" at=$i; break ;;\n        esac\n    done\n" +
           "    case \"$command $prev\" in\n" + values + files + "    esac\n" +
           "    if [[ \"$cur\" == -* ]]; then\n        case \"$command\" in\n" + options +
           "            *) _zentrix_words \"" + bash_options(app) + "\" ;;\n        esac\n        return\n    fi\n" +
           "    case \"$command\" in\n" + arguments + "        *) _zentrix_words \"" + joined(commands, " ") +
           "\" ;;\n    esac\n}\n" + bash_tail;
}

std::string zsh_completion(const CLI::App& app)
{
    std::string described, cases, globals;
    for (const CLI::App* command : visible_commands(app)) {
        described += "        '" + command->get_name() + ":" + zsh_text(command->get_description()) + "'\n";
        cases += "            " + command->get_name() + ")\n                " + zsh_arguments(*command) + " ;;\n";
    }
    for (const CLI::Option* option : own_options(app)) globals += "        " + zsh_option(*option) + " \\\n";
    return "#compdef zentrix\n# zsh completion for zentrix. Made by \"zentrix completion zsh\".\n\n"
           "_zentrix_commands()\n{\n    local -a commands=(\n" +
           described +
           "    )\n    _describe command commands\n}\n\n"
           "_zentrix_functions()\n{\n"
           "    local -a functions=(${(f)\"$(zentrix functions 2>/dev/null | "
           "sed -n 's/.* \\(ZX[A-Za-z0-9_]*\\)(.*/\\1/p' | sort -u)\"})\n"
           "    _describe function functions\n}\n\n"
           "_zentrix()\n{\n    local curcontext=\"$curcontext\" state line\n    typeset -A opt_args\n"
           "    _arguments -C \\\n" +
           globals +
           "        '1:command:_zentrix_commands' \\\n        '*::argument:->argument'\n"
           "    if [[ $state == argument ]]; then\n        case $words[1] in\n" +
           cases + "        esac\n    fi\n}\n\n" +
           "if [ \"$funcstack[1]\" = \"_zentrix\" ]; then\n    _zentrix \"$@\"\nelse\n    compdef _zentrix "
           "zentrix\nfi\n";
}

void add_completion_command(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand("completion", "Print a script for the shell's completion")->group("");
    auto shell = std::make_shared<std::string>();
    command->add_option("SHELL", *shell, "bash or zsh")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh"}).description(""));
    command->callback([&app, shell] { std::cout << (*shell == "bash" ? bash_completion(app) : zsh_completion(app)); });
}

}  // namespace zentrix::program
