#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <optional>

#include "host/files/file_error.h"
#include "host/parameters/json_file.h"
#include "host/parameters/parameter_entries.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/record.h"
#include "host/program/commands.h"
#include "host/program/json.h"
#include "host/program/lens_options.h"
#include "host/text/system_path.h"
#include "lens/numbers.h"

namespace zentrix::program {

namespace {

struct convert_request
{
    std::vector<std::string> words;
    host::parameter_set options;
    std::string to = "zentrix", output;
    host::file_frame frame;
};

/// {"value": -620, "unit": "A"} for "-620A", a number for "-620".
json number_with_unit(const std::string& word, const std::string& text)
{
    const auto begin_of_unit = [&] {
        double ignored = 0;
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data() + text.starts_with('+'), end, ignored);
        return error == std::errc{} ? static_cast<std::size_t>(stop - text.data()) : std::string::npos;
    }();
    const auto number = lens::parse_number(text.substr(0, begin_of_unit));
    if (!number || begin_of_unit == std::string::npos)
        throw usage_error{word + ": expected NAME=NUMBER or NAME=NUMBERUNIT, such as C10=-62nm"};
    if (begin_of_unit == text.size()) return *number;
    return {{"value", *number}, {"unit", text.substr(begin_of_unit)}};
}

/// The coefficients of words such as "C10=-62nm".
host::parameter_set set_of_words(const std::vector<std::string>& words)
{
    json entries = json::object();
    for (const std::string& word : words) {
        const auto equals = word.find('=');
        const std::string name = word.substr(0, equals), text = word.substr(equals + 1);
        if (entries.contains(name)) throw usage_error{name + " is given twice"};
        entries[name] = text.find('@') == std::string::npos ? number_with_unit(word, text) : json(text);
        if (entries[name].is_number() && host::notation_of_name(name)) {
            const auto [first, second] = name.starts_with("phi") ? std::pair{"deg", "rad"} : std::pair{"nm", "A"};
            std::string problem = name + " needs a unit: ";
            problem.append(word).append(first).append(" or ").append(word).append(second);
            throw usage_error{problem};
        }
    }
    try {
        return host::parameters_in(entries);
    } catch (const std::invalid_argument& problem) {
        throw usage_error{problem.what()};
    }
}

/// Whether a word is meant as a coefficient: "C12", "A1", which is no file.
bool is_name_without_value(const std::string& word)
{
    const bool is_name =
        host::notation_of_name(word) ||
        std::ranges::any_of(lens::all_coefficients, [&](const auto& about) { return about.name == word; });
    std::error_code ignored;
    return is_name && !std::filesystem::exists(host::system_path(word), ignored);
}

/// A file, coefficients as words and as options; later ones override.
host::parameter_set given_parameters(const convert_request& request)
{
    std::vector<std::string> files, words;
    for (const std::string& word : request.words)
        (word.find('=') == std::string::npos || word.ends_with(".json") ? files : words).push_back(word);
    if (!files.empty() && is_name_without_value(files[0]))
        throw usage_error{files[0] + " is not a file. Give a coefficient with its value: NAME=NUMBER or " +
                          "NAME=NUMBERUNIT, such as C12=140A"};
    if (files.size() > 1) throw usage_error{"one file can be converted, not " + std::to_string(files.size())};
    const host::parameter_set given = host::overlaid(request.options, set_of_words(words));
    return files.empty() ? given : host::overlaid(given, host::read_parameters(host::system_path(files[0])));
}

json converted(const convert_request& request, const host::parameter_set& parameters)
{
    const host::file_frame& frame = request.frame;
    if (const auto notation = host::notation_named(request.to)) return as_json(parameters, *notation, frame);
    if (!frame.length.empty() || !frame.angle.empty() || frame.clockwise || frame.zero_degrees != 0)
        throw usage_error{"--unit, --angle, --clockwise and --zero describe another notation: --to polar, for example"};
    return as_json(parameters);
}

/// For a table: 12 digits, as angles and powers of ten are not exact.
std::string short_text(double number)
{
    char digits[32];
    const auto written = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 12);
    return {digits, written.ptr};
}

std::string text_of(const json& value)
{
    if (value.is_number()) return short_text(value.get<double>());
    if (!value.is_array()) return value.is_string() ? value.get<std::string>() : value.dump();
    std::string text;
    for (const json& part : value) text += (text.empty() ? "" : ",") + text_of(part);
    return text;
}

void print_row(const std::string& name, const std::string& value, const std::string& unit)
{
    std::cout << std::left << std::setw(14) << name << std::right << std::setw(20) << value
              << (unit.empty() ? "" : " " + unit) << '\n';
}

void print_table(const json& set)
{
    for (const auto& [name, entry] : set.items()) {
        if (!entry.is_object() || name == "frame") {
            print_row(name, text_of(entry), "");
            continue;
        }
        const char* const number = entry.contains("value")     ? "value"
                                   : entry.contains("modulus") ? "modulus"
                                                               : "magnitude";
        std::string text = text_of(entry[number]);
        if (entry.contains("angle")) text += "@" + text_of(entry["angle"]);
        print_row(name, text, text_of(entry[number == std::string{"magnitude"} ? "units" : "unit"]));
    }
}

void run(const convert_request& request, const global_options& global)
{
    const json result = converted(request, given_parameters(request));
    if (result.empty()) throw usage_error{"give a file of parameters, or coefficients"};
    if (!request.output.empty()) {
        const auto file = host::system_path(request.output);
        if (file.extension() != ".json")
            throw host::file_error{file, "cannot be written: expected a name ending in .json"};
        host::require_no_record(file);
        host::write_json(file, result);
    }
    if (global.json)
        print(result);
    else
        print_table(result);
}

void add_frame(CLI::App& command, host::file_frame& frame)
{
    const char* const group = "Units and directions of the result, unless it is in the notation zentrix";
    command.add_option("--unit", frame.length, "Unit of lengths: pm, A, nm (default), um, mm or m")
        ->check(CLI::IsMember({"pm", "A", "nm", "um", "mm", "m"}).description(""))
        ->type_name("UNIT")
        ->group(group);
    command.add_option("--angle", frame.angle, "Unit of angles (default: deg)")
        ->check(CLI::IsMember({"deg", "rad"}).description(""))
        ->type_name("deg|rad")
        ->group(group);
    command.add_flag("--clockwise", frame.clockwise, "Azimuths grow clockwise on the displayed image")->group(group);
    command
        .add_option_function<std::string>(
            "--zero",
            [&frame](const std::string& word) {
                const auto degrees = lens::parse_number(word);
                if (!degrees) throw usage_error{"--zero is a number of degrees, not \"" + word + "\""};
                frame.zero_degrees = *degrees;
            },
            "Direction of azimuth 0 on the displayed image, counter-clockwise from right")
        ->type_name("DEGREES")
        ->group(group);
}

}  // namespace

void add_convert_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("convert", "Translate lens parameters from one notation to another");
    auto request = std::make_shared<convert_request>();
    command->add_option("FILE|NAME=VALUE", request->words,
                        "File of parameters or record of a result (.json), and coefficients such as C12=140A");
    command->add_option("--to", request->to, "Notation of the result (default: zentrix)")
        ->check(CLI::IsMember({"zentrix", "polar", "cartesian", "corrector", "nexus"}).description(""))
        ->type_name("zentrix|polar|cartesian|corrector|nexus");
    command->add_option("-o,--output", request->output, "Write the result to this file, too (.json)")
        ->type_name("FILE");
    add_frame(*command, request->frame);
    add_coefficients(*command, request->options);
    command->footer(
        "Examples:\n"
        "  zentrix convert out.json --to polar --unit A --angle rad\n"
        "  zentrix convert C10=-620A C12=140A phi12=0.305rad -o lens.json\n"
        "  zentrix convert --C1 -62 --A1 14@35 --to cartesian --json\n\n"
        "docs/notation.md compares the notations, docs/parameters.md describes the files.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
