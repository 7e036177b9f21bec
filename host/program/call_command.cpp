#include <algorithm>
#include <complex>
#include <iostream>

#include "host/files/image_file.h"
#include "host/objects/tag_group.h"
#include "host/program/argument.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

constexpr char help_on_arguments[] =
    R"(Arguments:
  number            4, -0.5, inf, -inf or nan
  complex number    re,im or a number
  text              as it is
  image             a .npy file, or null; the same file twice is one image
  list of texts     list:a,b,c
  output parameter  _ prints it after the call as name = value; _=START gives it a start value; null omits it

Examples:
  zentrix call ZXMedianFilter in.npy 2 null 1 -o out.npy
  zentrix call ZXMovingAverage2 in.npy 2 _ _ -o imgDst1=mean.npy -o imgDst2=deviation.npy
  zentrix call ZXGetCenterOfMass spot.npy _=12 _=15 5 20 0
  zentrix call ZXSelectImageFiles "_=data/*.raw" "" _=512 _=512 _=2)";

struct call_request
{
    std::string name;
    std::vector<std::string> words;
    std::vector<std::string> outputs;  ///< FILE or name=FILE
};

/// Files that receive images.
struct destinations
{
    std::string result;                          ///< empty: none
    std::map<std::string, std::string> by_name;  ///< output parameter -> file

    std::string file_for(const std::string& parameter) const
    {
        const auto found = by_name.find(parameter);
        return found == by_name.end() ? "" : found->second;
    }
};

bool is_image_output(const host::prototype& signature, const std::string& name)
{
    return std::any_of(signature.parameters.begin(), signature.parameters.end(), [&](const auto& parameter) {
        return parameter.name == name && parameter.type.kind == HOST_OUTPUT && parameter.type.cell_kind == HOST_IMAGE;
    });
}

/// Checked before the call, so that no work is lost on a misspelt name.
destinations destinations_of(const call_request& request, const host::prototype& signature)
{
    destinations result;
    for (const std::string& output : request.outputs) {
        const auto equals = output.find('=');
        const std::string name = equals == std::string::npos ? "" : output.substr(0, equals);
        const bool is_named = is_image_output(signature, name);
        if (!is_named && signature.result.kind != HOST_IMAGE)
            throw host::script_error{"-o " + output + ": " + signature.name + " does not return an image" +
                                     (name.empty() ? "" : " and has no image output parameter " + name)};
        std::string& file = is_named ? result.by_name[name] : result.result;
        if (!file.empty())
            throw host::script_error{
                std::string{"-o "}.append(output).append(": this image already goes to ").append(file)};
        file = is_named ? output.substr(equals + 1) : output;
        host::require_writable_kind(host::system_path(file));
    }
    return result;
}

json json_of(const host::tag& value);

json json_of(const host::tag_group& group)
{
    json tags = group.is_list() ? json::array() : json::object();
    for (std::size_t i = 0; i < group.count(); ++i) {
        const json value = json_of(*group.get_at(i));
        if (group.is_list())
            tags.push_back(value);
        else
            tags[group.name_at(i)] = value;
    }
    return tags;
}

json json_of(const host::tag& value)
{
    return std::visit(
        [](const auto& held) -> json {
            if constexpr (std::is_same_v<decltype(held), const host::tag_group_ref&>)
                return held ? json_of(*held) : json{};
            else
                return held;
        },
        value);
}

/// `file` is where the value was written, if it is an image.
json json_of(const host::script_value& value, const std::string& file)
{
    if (const auto image = host::object_in<host::image>(value)) return as_json(*image, file);
    if (const auto group = host::object_in<host::tag_group>(value)) return json_of(*group);
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return *whole;
    if (const auto* number = std::get_if<double>(&value)) return *number;
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* number = std::get_if<std::complex<double>>(&value))
        return json::array({number->real(), number->imag()});
    return {};
}

/// The same for people: images in a few words, texts without quotes, infinities as such.
std::string text_of(const host::script_value& value, const std::string& file)
{
    using host::number_text;
    if (const auto image = host::object_in<host::image>(value))
        return one_line(*image) + (file.empty() ? ", not written (use -o FILE)" : " -> " + file);
    if (const auto* number = std::get_if<double>(&value)) return number_text(*number);
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* number = std::get_if<std::complex<double>>(&value))
        return number_text(number->real()) + "," + number_text(number->imag());
    return json_of(value, file).dump(-1, ' ', false, json::error_handler_t::replace);
}

/// A value after the call, with the file that it goes to.
struct delivery
{
    std::string name;  ///< empty: the result
    host::script_value value;
    std::string file;
};

std::vector<delivery> outputs_of(const host::prototype& signature, const std::vector<host::script_value>& arguments,
                                 const destinations& files)
{
    std::vector<delivery> outputs;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = signature.parameter_of(i).name;
        if (const auto* cell = std::get_if<host::cell_ref>(&arguments[i]))
            outputs.push_back({name, (*cell)->value, files.file_for(name)});
        else if (host::object_in<host::tag_group>(arguments[i]))  // the function may have changed it
            outputs.push_back({name, arguments[i], ""});
    }
    return outputs;
}

void write(const delivery& output)
{
    if (output.file.empty()) return;
    const auto image = host::object_in<host::image>(output.value);
    if (!image) throw host::script_error{"there is no image to write to " + output.file};
    host::write_image(host::system_path(output.file), *image);
}

void run(const call_request& request, const global_options& global)
{
    session zentrix{global};
    const auto callee =
        choose_overload(request.name, zentrix.engine().functions().overloads(request.name), request.words);
    const host::prototype& signature = callee->signature();
    const destinations files = destinations_of(request, signature);

    read_images images;
    std::vector<host::script_value> arguments;
    for (std::size_t i = 0; i < request.words.size(); ++i)
        arguments.push_back(read_argument(request.words[i], signature.parameter_of(i).type, images));
    const delivery result{"", host::call_converted(*callee, arguments), files.result};
    const auto outputs = outputs_of(signature, arguments, files);
    write(result);
    for (const delivery& output : outputs) write(output);

    if (global.json) {
        json values = json::object();
        for (const delivery& output : outputs) values[output.name] = json_of(output.value, output.file);
        return print({{"result", json_of(result.value, result.file)}, {"outputs", values}});
    }
    if (signature.result.kind != HOST_VOID) std::cout << text_of(result.value, result.file) << '\n';
    for (const delivery& output : outputs)
        std::cout << output.name << " = " << text_of(output.value, output.file) << '\n';
}

}  // namespace

void add_call_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("call", "Call a script function by name");
    auto request = std::make_shared<call_request>();
    command->add_option("NAME", request->name, "Function, as \"zentrix functions\" lists it")->required();
    command->add_option("ARGUMENT", request->words, "Its arguments, see below");
    command
        ->add_option("-o", request->outputs,
                     "Write the returned image (.npy or .png); with name=FILE the image of that output parameter")
        ->type_name("[name=]FILE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command->footer(help_on_arguments);
    command->callback([&global, request] {
        for (auto& word : request->words) word = unprotect_number(word);
        run(*request, global);
    });
}

}  // namespace zentrix::program
