#include "host/program/picture_options.h"

#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/files/png.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

using host::number_text;

namespace {

bool is_picture_name(const std::string& name) { return name.ends_with(".png") || name.ends_with(".PNG"); }

}  // namespace

void add_display_options(CLI::App& command, host::display_mode& shown, host::palette& shades)
{
    command
        .add_option_function<std::string>(
            "--show", [&](const std::string& word) { shown = host::parse_display_mode(word).value(); },
            "What pictures show: real, imaginary, modulus, log (of the modulus) or phase")
        ->check(CLI::IsMember({"real", "imaginary", "modulus", "log", "phase"}).description(""))
        ->type_name("MODE");
    command.add_flag_function(
        "--colour", [&](std::int64_t) { shades = host::palette::cyclic; }, "Show phases in cyclic colours");
}

void add_picture_options(CLI::App& command, picture_options& picture)
{
    command.add_option("--png", picture.png, "Also write a picture of the result")->type_name("FILE");
    add_display_options(command, picture.shown, picture.shades);
}

void check_picture_name(const std::string& name)
{
    if (!name.empty() && !is_picture_name(name))
        throw host::file_error{host::system_path(name), "cannot be written: expected a name ending in .png"};
}

void check_names(const std::string& output, const picture_options& picture)
{
    host::require_writable_kind(host::system_path(output));
    check_picture_name(picture.png);
}

std::optional<shown_range> write_result(const std::string& output, const picture_options& picture,
                                        const host::image& pixels, const host::picture_texts& facts)
{
    std::optional<shown_range> shown;
    const auto write = [&](const std::string& name) {
        const auto limits = host::write_png(host::system_path(name), pixels, picture.shown, picture.shades, facts);
        shown = shown_range{picture.shown, picture.shades, limits};
    };
    if (is_picture_name(output))
        write(output);
    else
        host::write_image(host::system_path(output), pixels);
    if (!picture.png.empty()) write(picture.png);
    return shown;
}

std::string one_line(const shown_range& range)
{
    const std::string what = host::word_for(range.shown);
    if (range.shades == host::palette::cyclic) return what + " in cyclic colours";
    return what + " from " + number_text(range.limits.black) + " (black) to " + number_text(range.limits.white) +
           " (white)";
}

json as_json(const shown_range& range)
{
    json shown{{"shown", host::word_for(range.shown)}};
    if (range.shades == host::palette::cyclic) return shown;
    shown["black"] = range.limits.black;
    shown["white"] = range.limits.white;
    return shown;
}

}  // namespace zentrix::program
