#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "host/pictures/picture.h"

namespace zentrix::program {

/// What the commands with a picture share: where it goes and what it shows.
struct picture_options
{
    std::string png;
    host::display_mode shown = host::display_mode::modulus;
    host::palette shades = host::palette::grey;
};

/// Adds --show MODE and --colour; what they fill has to live as long as `command`.
void add_display_options(CLI::App& command, host::display_mode& shown, host::palette& shades);
/// Adds --png FILE, --show MODE and --colour; `picture` has to live as long as `command`.
void add_picture_options(CLI::App& command, picture_options& picture);

/// Throws  host::file_error when `name` is neither empty nor ends in .png
void check_picture_name(const std::string& name);

/// Throws  host::file_error when a name has the wrong ending, before any work is done
void check_names(const std::string& output, const picture_options& picture);

/// Writes the result to `output`, by its extension, and the picture if one is asked for.
void write_result(const std::string& output, const picture_options& picture, const host::image& pixels);

}  // namespace zentrix::program
