#include "host/program/help/man_page.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <sstream>

#include "host/program/help/option_facts.h"
#include "host/program/help/usage_problem.h"

namespace zentrix::program {

namespace {

/// The character at text[at], in UTF-8, as roff writes it. Moves `at` past it.
std::string code_point(const std::string& text, std::size_t& at)
{
    const auto byte = [&](std::size_t i) -> unsigned {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    };
    const unsigned first = byte(at);
    const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    unsigned code = first & (0xFFU >> (length == 1 ? 1 : length + 1));
    for (std::size_t i = 1; i < length; ++i) code = code << 6 | (byte(at + i) & 0x3FU);
    at += length;
    char written[16];
    std::snprintf(written, sizeof written, "\\[u%04X]", code);
    return written;
}

/// Text without commands of roff.
std::string escaped(const std::string& text)
{
    std::string roff;
    for (std::size_t at = 0; at < text.size();) {
        const char c = text[at];
        if (static_cast<unsigned char>(c) >= 0x80) {
            roff += code_point(text, at);
            continue;
        }
        roff += c == '\\' ? "\\e" : c == '-' ? "\\-" : c == '~' ? "\\(ti" : c == '^' ? "\\(ha" : std::string{c};
        ++at;
    }
    return roff.starts_with('.') || roff.starts_with('\'') ? "\\&" + roff : roff;
}

std::string bold(const std::string& text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + escaped(text) + "\\fR"; }

void write_option(std::ostream& page, const CLI::Option& option)
{
    std::string names;
    for (const std::string& name : names_of(option)) names += (names.empty() ? "" : ", ") + bold(name);
    const std::string value = value_of(option);
    page << ".TP\n"
         << names << (value.empty() ? "" : " " + italic(value)) << '\n'
         << escaped(option.get_description()) << (option.get_required() ? " (required)" : "") << '\n';
}

/// Options by group, in the order of --help.
void write_options(std::ostream& page, const CLI::App& command)
{
    for (const std::string& group : command.get_groups()) {
        if (group.empty()) continue;
        if (group != "Options" && group != "Positionals") page << ".PP\n" << bold(group) << '\n';
        for (const CLI::Option* option : own_options(command))
            if (option->get_group() == group && (command.get_parent() == nullptr || !option->check_lname("help")))
                write_option(page, *option);
    }
}

/// Paragraphs; lines that begin with blanks, such as examples, stay as they are.
void write_text(std::ostream& page, const std::string& text)
{
    std::istringstream lines{text};
    bool is_literal = false, starts = true;
    for (std::string line; std::getline(lines, line);) {
        const auto first = line.find_first_not_of(' ');
        const bool literal = first != std::string::npos && first > 0;
        if (literal != is_literal) {
            page << (literal ? ".PP\n.nf\n.RS 4\n" : ".RE\n.fi\n.PP\n");
            starts = false;
        }
        is_literal = literal;
        if (first == std::string::npos) {
            starts = true;
            continue;
        }
        if (starts) page << ".PP\n";
        starts = false;
        page << escaped(line.substr(first)) << '\n';
    }
    if (is_literal) page << ".RE\n.fi\n";
}

void write_command(std::ostream& page, const CLI::App& command)
{
    page << ".SS " << bold("zentrix " + command.get_name());
    for (const CLI::Option* argument : arguments_of(command))
        page << ' ' << italic(argument->get_name()) << (argument->get_items_expected_max() > 1 ? " ..." : "");
    page << " [" << italic("OPTION") << "]...\n" << escaped(command.get_description()) << ".\n";
    for (const CLI::Option* argument : arguments_of(command))
        page << ".TP\n" << italic(argument->get_name()) << '\n' << escaped(argument->get_description()) << '\n';
    write_options(page, command);
    write_text(page, command.get_footer());
}

}  // namespace

std::string man_page(const CLI::App& app)
{
    std::ostringstream page;
    page << ".TH ZENTRIX 1 \"" ZENTRIX_DATE "\" \"zentrix " ZENTRIX_VERSION "\" \"User Commands\"\n"
         << ".SH NAME\nzentrix \\- corrects lens aberrations of electron waves, unwraps phases, filters images\n"
         << ".SH SYNOPSIS\n"
         << bold("zentrix") << ' ' << italic("COMMAND") << " [" << italic("OPTION") << "]...\n"
         << ".SH DESCRIPTION\n"
         << escaped(app.get_description()) << '\n'
         << ".SH OPTIONS OF EVERY COMMAND\n";
    write_options(page, app);
    page << ".SH COMMANDS\n";
    for (const CLI::App* command : visible_commands(app)) write_command(page, *command);
    page << ".SH ENVIRONMENT\n.TP\n"
         << bold("ZENTRIX_LIBRARY") << "\nLibrary file that is loaded when " << bold("--library") << " is not given\n"
         << ".TP\n"
         << bold("OMP_NUM_THREADS") << "\nThe most threads that one process uses\n"
         << ".SH EXIT STATUS\n.TP\n0\nsuccess\n.TP\n1\na file or a function failed\n.TP\n2\nthe command line is wrong\n"
         << ".TP\n3\n"
         << bold("zentrix estimate") << " determined no coefficient\n";
    return page.str();
}

void add_man_command(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand("man", "Print the manual page (roff)")->group("");
    command->callback([&app] { std::cout << man_page(app); });
}

}  // namespace zentrix::program
