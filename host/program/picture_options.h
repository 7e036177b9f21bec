#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "host/files/png_text.h"
#include "host/objects/element.h"
#include "host/pictures/figure.h"
#include "host/program/json.h"

namespace zentrix::program {

/// Options of the commands that can write a picture.
struct picture_options : host::figure_style
{
    std::string png;
    std::string limits_of;  ///< picture whose limits are used; empty: none
};

/// Adds --show MODE and --colour of windows, whose display can change. The variables must outlive `command`.
void add_display_options(CLI::App& command, host::display_mode& shown, host::palette& shades);
/// Adds --png FILE and the options of the picture's look. `picture` must outlive `command`.
void add_picture_options(CLI::App& command, picture_options& picture);

/// Whether a file of this name is a picture.
bool is_picture_name(const std::string& name);
/// Throws  host::file_error unless `name` is empty or ends in .png
void check_picture_name(const std::string& name);

/// How pictures are painted, for the record: {"shown": "phase", "scale_bar": true}. Options not given are left out.
json choice_of(const picture_options& picture);

/// Checks the names and limits before any work is done.
/// meaning  of the elements of the result
/// Throws  host::file_error for a name that ends in something else, a format without such elements, and for a picture
///         without limits
void check_names(const std::string& output, const picture_options& picture,
                 host::element_class meaning = host::element_class::real);

/// Writes the result to `output`, by its extension, and the picture if one was requested.
/// facts  texts for the picture, for example {"Command", "zentrix correct wave.npy ..."}; what the picture shows is
///        added to them
/// Returns nothing unless a picture was written, be it `output` itself.
std::optional<host::shown_range> write_result(const std::string& output, const picture_options& picture,
                                              const host::image& pixels, const host::picture_texts& facts = {});

/// "phase from -3.14 (black) to 3.14 (white), 12 pixels that are not a number in vermilion"
std::string one_line(const host::shown_range& range);
/// {"shown": "phase", "black": -3.14, "white": 3.14, "not_a_number": 12}
json as_json(const host::shown_range& range);

}  // namespace zentrix::program
