#include "host/program/call_work.h"

#include <algorithm>
#include <complex>
#include <map>

#include "host/batch/output_files.h"
#include "host/files/image_file.h"
#include "host/objects/tag_group.h"
#include "host/program/argument.h"
#include "host/program/describe.h"
#include "host/program/function_name.h"
#include "host/program/picture_options.h"
#include "host/program/result_record.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

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
/// outputs  FILE or name=FILE
destinations destinations_of(const std::vector<std::string>& outputs, const host::prototype& signature)
{
    destinations result;
    for (const std::string& output : outputs) {
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
        host::require_folder(file);
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

/// The words with the task's file in place of each_file.
std::vector<std::string> words_for(const std::vector<std::string>& words, const std::string& file)
{
    std::vector<std::string> own = words;
    if (!file.empty()) std::ranges::replace(own, std::string{each_file}, file);
    return own;
}

/// The outputs with the task's files.
std::vector<std::string> outputs_for(const std::vector<std::string>& outputs, const host::file_task& task)
{
    std::vector<std::string> own;
    for (std::size_t i = 0; i < outputs.size(); ++i)
        own.push_back(outputs[i].substr(0, outputs[i].size() - file_of_output(outputs[i]).size()) + task.outputs.at(i));
    return own;
}

/// The words that name images to read.
std::vector<std::string> image_files(const host::prototype& signature, const std::vector<std::string>& words)
{
    std::vector<std::string> files;
    for (std::size_t i = 0; i < words.size(); ++i)
        if (signature.parameter_of(i).type.kind == HOST_IMAGE && words[i] != "null") files.push_back(words[i]);
    return files;
}

host::provenance provenance_of(const host::prototype& signature, const std::vector<std::string>& words,
                               const std::vector<std::string>& outputs, const global_options& global)
{
    host::provenance made{.command = {"zentrix", "call", signature.name},
                          .inputs = {},
                          .parameters = {},
                          .program = program_with_library(global),
                          .more = {{"function", signature.text}, {"arguments", words}}};
    made.command.insert(made.command.end(), words.begin(), words.end());
    for (const std::string& output : outputs) made.command.insert(made.command.end(), {"-o", output});
    for (const std::string& file : image_files(signature, words)) made.inputs.push_back(host::input_of(file));
    return made;
}

/// Checks that the value is an image which its file can hold, before any file is written.
void require_writable(const delivery& output, const picture_options& look)
{
    const auto image = host::object_in<host::image>(output.value);
    if (!image) throw host::script_error{"there is no image to write to " + output.file};
    host::require_writable_kind(host::system_path(output.file), image->type().meaning);
    check_picture(output.file, look, *image);
}

/// Writes the images that go to files, with one record.
void write_all(const std::vector<delivery>& values, const host::file_task& task, const host::provenance& made)
{
    const auto results = results_of(task);
    if (results.empty()) return;
    const auto record = host::record_path(results);
    picture_options look;
    look.shown = host::display_mode::real;
    for (const delivery& output : values)
        if (!output.file.empty()) require_writable(output, look);
    std::vector<host::recorded_result> written;
    for (const delivery& output : values) {
        if (output.file.empty()) continue;
        const auto image = host::object_in<host::image>(output.value);
        const bool is_picture = write_result(output.file, look, *image, host::texts_of(made)).has_value();
        written.push_back({host::system_path(output.file), is_picture ? nullptr : image.get()});
    }
    finish_with_record(record, made, written);
}

/// "result" or "name = value" for a person, each of `values` in a line.
std::string text_of(const std::vector<delivery>& values, bool returns_value)
{
    std::string text;
    for (const delivery& output : values) {
        if (output.name.empty() && !returns_value) continue;
        text += (output.name.empty() ? "" : output.name + " = ") + text_of(output.value, output.file) + "\n";
    }
    return text;
}

/// Several lines in one, after the file's name.
std::string in_one_line(const std::string& file, std::string lines)
{
    if (lines.ends_with('\n')) lines.pop_back();
    for (std::size_t end = lines.find('\n'); end != std::string::npos; end = lines.find('\n'))
        lines.replace(end, 1, ", ");
    return file + ": " + lines + "\n";
}

/// Calls the function. The library's messages do not name the function: they become "ZXMedianFilter: MESSAGE", with the
/// prototype in the next line.
host::script_value call(host::function& callee, const std::vector<host::script_value>& arguments)
{
    try {
        return host::call_converted(callee, arguments);
    } catch (const host::script_error& problem) {
        const host::prototype& signature = callee.signature();
        throw host::script_error{signature.name + ": " + problem.what() + "\n  " + signature.text};
    }
}

}  // namespace

std::string file_of_output(const std::string& output)
{
    const auto equals = output.find('=');
    return equals == std::string::npos ? output : output.substr(equals + 1);
}

host::file_outcome call_work::operator()(const host::file_task& task)
{
    step_times times;
    host::engine& engine = session_.engine(times);
    const auto words = words_for(request_.words, task.input);
    const std::string name = full_function_name(engine.functions(), request_.name);
    const auto callee = choose_overload(name, engine.functions().overloads(name), words);
    const host::prototype& signature = callee->signature();
    const auto outputs = outputs_for(request_.outputs, task);
    const destinations files = destinations_of(outputs, signature);
    host::require_own_names(image_files(signature, words), task.outputs);
    const auto made = outputs.empty() ? host::provenance{} : provenance_of(signature, words, outputs, global_);
    if (request_.files.resumes && !outputs.empty() && host::is_recorded(results_of(task), made))
        return done_before(task);

    read_images images;
    std::vector<host::script_value> arguments;
    for (std::size_t i = 0; i < words.size(); ++i)
        arguments.push_back(read_argument(words[i], signature.parameter_of(i).type, images));
    std::vector<delivery> values{{"", call(*callee, arguments), files.result}};
    for (delivery& output : outputs_of(signature, arguments, files)) values.push_back(std::move(output));
    write_all(values, task, made);

    host::file_outcome outcome;
    json named = json::object();
    for (std::size_t i = 1; i < values.size(); ++i) named[values[i].name] = json_of(values[i].value, values[i].file);
    outcome.facts = {{"result", json_of(values[0].value, files.result)}, {"outputs", named}};
    outcome.text = text_of(values, signature.result.kind != HOST_VOID);
    if (!task.input.empty()) outcome.text = in_one_line(task.input, outcome.text);
    return outcome;
}

}  // namespace zentrix::program
