#pragma once

#include "tests/script/function_rows.h"

/// One table of typical calls of all script functions, for tests that make every request of a call fail.
namespace faults {

using namespace script;

struct typical_call
{
    std::string function;
    arguments args;
    /// The text of a failure, if the function replaces the host's.
    std::string other_text = {};
};

/// Calls of every registered prototype: with and without a destination, with given and with new outputs, of integers
/// that are converted and of types that are not.
std::vector<typical_call> typical_calls();

/// Independent copies of the images, tag groups and outputs. An image that occurs twice does so in the copy.
arguments copy_of(const arguments& args);

/// The names, types, sizes, pixels, tags and values that can be reached from the arguments or from a result, as text.
std::string contents(const arguments& values);

/// The images among the arguments and in their outputs.
std::vector<image_ref> images_in(const arguments& args);

/// The values in the outputs.
std::vector<script_value> output_values(const arguments& args);

/// Options of a host that has every file and opens each as the same image.
engine_options options();

}  // namespace faults
