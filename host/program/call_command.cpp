#include <iostream>

#include "host/files/image_file.h"
#include "host/objects/tag_group.h"
#include "host/program/argument.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/program/json.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

struct call_request
{
    std::string name;
    std::vector<std::string> words;
    std::vector<std::string> outputs;  ///< FILE or name=FILE
};

/// Where the images go that a call gives back.
struct destinations
{
    std::string result;                          ///< empty: nowhere
    std::map<std::string, std::string> by_name;  ///< output parameter -> file
};

bool is_image_output(const host::prototype& signature, const std::string& name)
{
    for (const auto& parameter : signature.parameters)
        if (parameter.name == name && parameter.type.kind == HOST_OUTPUT && parameter.type.cell_kind == HOST_IMAGE)
            return true;
    return false;
}

[[noreturn]] void refuse_second_place(const std::string& output, const std::string& place)
{
    throw host::script_error{"-o " + output + ": the same image is written already to " + place};
}

/// Checked before the call, so that no work is lost on a misspelt name.
destinations sort_out(const call_request& request, const host::prototype& signature)
{
    destinations result;
    for (const std::string& output : request.outputs) {
        const auto equals = output.find('=');
        const std::string name = equals == std::string::npos ? "" : output.substr(0, equals);
        const bool named = is_image_output(signature, name);
        std::string& place = named ? result.by_name[name] : result.result;
        if (!named && signature.result.kind != HOST_IMAGE)
            throw host::script_error{"-o " + output + ": " + signature.name + " gives no image back" +
                                     (name.empty() ? "" : " and has no image output parameter " + name)};
        if (!place.empty()) refuse_second_place(output, place);
        place = named ? output.substr(equals + 1) : output;
        host::require_writable_kind(host::system_path(place));
    }
    return result;
}

std::string tag_text(const host::tag& value, bool json);

std::string group_text(const host::tag_group& group, bool json)
{
    std::vector<std::string> tags;
    for (std::size_t i = 0; i < group.count(); ++i) tags.push_back(tag_text(*group.get_at(i), json));
    return json_array(tags);
}

std::string tag_text(const host::tag& value, bool json)
{
    if (const auto* group = std::get_if<host::tag_group_ref>(&value))
        return *group ? group_text(**group, json) : "null";
    if (const auto* text = std::get_if<std::string>(&value)) return json ? json_string(*text) : *text;
    return host::text_of(value);
}

/// Writes what the value holds to `file`, if it is an image and a file is given, and says what it is.
std::string deliver(const host::script_value& value, const std::string& file, bool json)
{
    if (const auto image = host::object_in<host::image>(value)) {
        if (!file.empty()) host::write_image(host::system_path(file), *image);
        if (json) return as_json(*image, file);
        return one_line(*image) + (file.empty() ? ", not written: -o FILE does" : " -> " + file);
    }
    if (!file.empty()) throw host::script_error{"there is no image to write to " + file};
    if (const auto group = host::object_in<host::tag_group>(value)) return group_text(*group, json);
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* number = std::get_if<double>(&value)) return json ? json_number(*number) : plain_number(*number);
    if (const auto* text = std::get_if<std::string>(&value)) return json ? json_string(*text) : *text;
    if (const auto* number = std::get_if<std::complex<double>>(&value))
        return json ? json_array({json_number(number->real()), json_number(number->imag())})
                    : plain_number(number->real()) + "," + plain_number(number->imag());
    return "null";
}

void run(const call_request& request, const global_options& global)
{
    session zentrix{global};
    const auto callee =
        choose_overload(request.name, zentrix.engine().functions().overloads(request.name), request.words);
    const host::prototype& signature = callee->signature();
    const destinations files = sort_out(request, signature);

    read_images images;
    std::vector<host::script_value> arguments;
    for (std::size_t i = 0; i < request.words.size(); ++i)
        arguments.push_back(read_argument(request.words[i], signature.parameter_of(i).type, images));
    const host::script_value result = host::call_converted(*callee, arguments);

    std::vector<std::pair<std::string, std::string>> outputs;
    const bool is_void = signature.result.kind == HOST_VOID;
    const std::string result_text = is_void ? "null" : deliver(result, files.result, global.json);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = signature.parameter_of(i).name;
        const auto* cell = std::get_if<host::cell_ref>(&arguments[i]);
        const auto file = files.by_name.find(name);
        if (cell)
            outputs.emplace_back(name,
                                 deliver((*cell)->value, file == files.by_name.end() ? "" : file->second, global.json));
        else if (const auto group = host::object_in<host::tag_group>(arguments[i]))  // a function may have sorted it
            outputs.emplace_back(name, group_text(*group, global.json));
    }
    if (global.json) {
        std::cout << json_object({{"result", result_text}, {"outputs", json_object(outputs)}}) << '\n';
        return;
    }
    if (!is_void) std::cout << result_text << '\n';
    for (const auto& [name, text] : outputs) std::cout << name << " = " << text << '\n';
}

}  // namespace

void add_call_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand(
        "call", "Call a script function by name: zentrix call ZXMedianFilter in.npy 2 null 1 -o out.npy");
    auto request = std::make_shared<call_request>();
    command->add_option("NAME", request->name, "The function, as zentrix functions lists it")->required();
    command->add_option("ARGUMENT", request->words, "Its arguments");
    command
        ->add_option("-o", request->outputs,
                     "Write the resulting image (.npy, .png), or with name=FILE that output parameter's")
        ->type_name("[name=]FILE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command->footer(
        "Arguments: a number or a text as it stands, a complex number as re,im; an image as a .npy file or null (the "
        "same file twice is one image); a list of texts as list:a,b,c; an output parameter as _ (it is printed as "
        "name = value) or null.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
