#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "host/pictures/picture.h"

namespace zentrix::program {

/// Options of the commands that can write a picture.
struct picture_options
{
    std::string png;
    host::display_mode shown = host::display_mode::modulus;
    host::palette shades = host::palette::grey;
};

/// Adds --show MODE and --colour. The variables must outlive `command`.
void add_display_options(CLI::App& command, host::display_mode& shown, host::palette& shades);
/// Adds --png FILE, --show MODE and --colour. `picture` must outlive `command`.
void add_picture_options(CLI::App& command, picture_options& picture);

/// Throws  host::file_error unless `name` is empty or ends in .png
void check_picture_name(const std::string& name);

/// Checks the endings of the names before any work is done. Throws  host::file_error
void check_names(const std::string& output, const picture_options& picture);

/// Writes the result to `output`, by its extension, and the picture if one was requested.
void write_result(const std::string& output, const picture_options& picture, const host::image& pixels);

}  // namespace zentrix::program
