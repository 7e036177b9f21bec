#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/files/png_text.h"
#include "host/objects/element.h"
#include "host/pictures/figure.h"
#include "host/program/json.h"
#include "host/program/parser.h"

namespace zentrix::program {

/// Options of the commands that can write a picture.
struct picture_options : host::figure_style
{
    std::string png;
    std::string limits_of;                 ///< picture whose limits are used; empty: none
    std::vector<const CLI::Option*> look;  ///< options that only a picture makes use of

    /// Whether an option such as "--show" is on the command line.
    bool is_given(const std::string& option) const;
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

/// Whether a picture is to be written, be it `output` itself.
bool has_picture(const std::string& output, const picture_options& picture);

/// Checks names, folders, options and limits before any work is done.
/// meaning  of the elements of the result
/// Throws  host::file_error for a name that ends in something else, a folder that does not exist, a format without such
///         elements, and for a picture without limits; usage_error for no name, and for the look of a picture that is
///         not written
void check_names(const std::string& output, const picture_options& picture,
                 host::element_class meaning = host::element_class::real);

/// The part of check_names about the picture.
/// output  of the command; empty: none but the picture
void check_picture_of(const picture_options& picture, const std::string& output = "");

/// Checks whether the picture can be made, before anything is written. Nothing is checked if none is to be written.
/// pixels  what it shows; only size and scale are used
/// Throws  host::file_error naming the picture
void check_picture(const std::string& output, const picture_options& picture, const host::image& pixels);

/// Writes the result to `output`, by its extension, and the picture if one was requested.
/// facts  texts for the picture, for example {"Command", "zentrix correct wave.npy ..."}; what the picture shows is
///        added to them
/// shown  the image in the picture; null: the result
/// Returns nothing unless a picture was written, be it `output` itself.
/// Throws  host::file_error, as check_picture before anything is written
std::optional<host::shown_range> write_result(const std::string& output, const picture_options& picture,
                                              const host::image& pixels, const host::picture_texts& facts = {},
                                              const host::image* shown = nullptr);

/// "phase (rad) from -3.14 (black) to 3.14 (white), 12 pixels that are not a number in vermilion"
std::string one_line(const host::shown_range& range);
/// {"shown": "phase", "quantity": "phase (rad)", "black": -3.14, "white": 3.14, "not_a_number": 12}
json as_json(const host::shown_range& range);

}  // namespace zentrix::program
