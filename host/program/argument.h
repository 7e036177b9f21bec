#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/objects/function.h"
#include "host/objects/image.h"

/// Words of a command line as arguments of a script function:
///   integer types      a whole number in the range of the type
///   float, double      a number, inf or nan
///   complex            re,im or a number
///   string             the word itself
///   images             a file or null; the same file named twice is one image, so functions can work in place
///   TagGroup           null, or list:a,b,c for a list of texts
///   other objects      null
///   output parameters  _ to print the value after the call, _=VALUE to give it a start value too, null to omit it
namespace zentrix::program {

/// The images read for one call, by the word that names the file.
using read_images = std::map<std::string, host::image_ref>;

/// The command-line parser takes negative numbers that do not start with a digit ("-inf", "-.5,1") for options. Words
/// of a call are protected before parsing and restored after it; all other words stay as they are.
std::string protect_number(const std::string& word);
std::string unprotect_number(const std::string& word);

/// How well a word fits a parameter: 0 is best, larger is worse; nothing when it does not fit. Reads no file.
std::optional<int> suitability(const std::string& word, const host::prototype_type& type);

/// The words that fit a type, for messages: "a whole number", "a file or null", ...
std::string expected_for(const host::prototype_type& type);

/// The value of a word that fits.
/// Throws  host::file_error when the file that it names cannot be read
host::script_value read_argument(const std::string& word, const host::prototype_type& type, read_images& images);

/// The overload of `name` that the words fit best; the first of several equal ones.
/// Throws  host::script_error naming the argument that does not fit and what is expected, or listing the prototypes
///         when none has that many parameters
host::function_ref choose_overload(const std::string& name, const std::vector<host::function_ref>& overloads,
                                   const std::vector<std::string>& words);

}  // namespace zentrix::program
