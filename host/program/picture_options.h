#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "host/files/png_text.h"
#include "host/pictures/picture.h"
#include "host/program/json.h"

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

/// What a written picture shows.
struct shown_range
{
    host::display_mode shown;
    host::palette shades;
    host::grey_limits limits;
};

/// Writes the result to `output`, by its extension, and the picture if one was requested.
/// facts  texts for the picture, for example {"Command", "zentrix correct wave.npy ..."}; what the picture shows is
///        added to them
/// Returns nothing unless a picture was written, be it `output` itself.
std::optional<shown_range> write_result(const std::string& output, const picture_options& picture,
                                        const host::image& pixels, const host::picture_texts& facts = {});

/// "phase from -3.14 (black) to 3.14 (white)"
std::string one_line(const shown_range& range);
/// {"shown": "phase", "black": -3.14, "white": 3.14}
json as_json(const shown_range& range);

}  // namespace zentrix::program
