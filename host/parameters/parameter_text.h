#pragma once

#include <string>
#include <vector>

#include "host/parameters/parameter_set.h"

/// Sets of parameters as the text of commands and programs, for example for the clipboard. Numbers are the shortest
/// decimal numbers that read back as the same, so all of them make the same wave.
namespace zentrix::host {

/// The words of a command line that removes the aberrations of the set: "--kv", "300", "--C1", "-30", ...
std::vector<std::string> option_words(const parameter_set& set);

/// The same words, separated by blanks.
std::string option_text(const parameter_set& set);

/// A call in Python: "zentrix.correct(wave, kv=300, pixel=0.05, C1=-30, A1=(12.5, 135))".
std::string python_text(const parameter_set& set);

/// The script function's call that multiplies the centred transform `spectrum` of a wave of width x height pixels, in
/// place. Throws  std::invalid_argument as optics_of and lens::arguments_for
std::string script_text(const parameter_set& set, int width, int height);

/// The set in a text: an object as read_parameters reads it from a file, or the options of option_text, also those of
/// a whole command line "zentrix correct ...".
/// Throws  std::invalid_argument naming what is not understood; file_error for an object
parameter_set parameters_in_text(const std::string& text);

}  // namespace zentrix::host
