#include "host/program/picture_options.h"

#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/text/system_path.h"

namespace zentrix::program {

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
    if (!name.empty() && !name.ends_with(".png") && !name.ends_with(".PNG"))
        throw host::file_error{host::system_path(name), "cannot be written: expected a name ending in .png"};
}

void check_names(const std::string& output, const picture_options& picture)
{
    host::require_writable_kind(host::system_path(output));
    check_picture_name(picture.png);
}

void write_result(const std::string& output, const picture_options& picture, const host::image& pixels)
{
    host::write_image(host::system_path(output), pixels, picture.shown, picture.shades);
    if (!picture.png.empty()) host::write_image(host::system_path(picture.png), pixels, picture.shown, picture.shades);
}

}  // namespace zentrix::program
