#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/objects/function.h"
#include "host/objects/image.h"

/// Words of a command line as arguments of a script function:
///   integer types      a whole number in the type's range
///   float, double      a number, inf or nan
///   complex            re,im or a number
///   string             the word as it stands
///   images             a file, or null; the same file named twice is one image, so functions can work in place
///   TagGroup           null, or list:a,b,c for a list of texts
///   other objects      null
///   output parameters  _ to have it printed, or null to go without
namespace zentrix::program {

/// The images that one call has read, by the word that named them.
using read_images = std::map<std::string, host::image_ref>;

/// How well the word suits a parameter: 0 well, more the worse; nothing when it does not suit at all. Reads no file.
std::optional<int> suitability(const std::string& word, const host::prototype_type& type);

/// What would suit, for messages: "a whole number", "a file or null", ...
const char* expected_for(const host::prototype_type& type);

/// The value of a word that suits.
/// Throws  host::file_error when the file it names cannot be read
host::script_value read_argument(const std::string& word, const host::prototype_type& type, read_images& images);

/// The overload of `name` that the words suit best; among equals the first.
/// Throws  host::script_error saying which argument does not suit and what was expected, or listing the prototypes when
///         none takes that many arguments
host::function_ref choose_overload(const std::string& name, const std::vector<host::function_ref>& overloads,
                                   const std::vector<std::string>& words);

}  // namespace zentrix::program
