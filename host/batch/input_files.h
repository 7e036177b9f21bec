#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace zentrix::host {

/// Which files of a folder are inputs.
using file_filter = std::function<bool(const std::filesystem::path&)>;

/// The files that the words of a command line name, UTF-8, each once:
///   the name of a file   itself, whether it exists or not
///   a folder             the files in it that pass `is_input`, sorted by name, without those of its folders
///   a pattern            the files whose names fit, sorted, see fits_wildcard; folders have to be written out
/// Throws  file_error for a folder without inputs, a folder that cannot be read, and a pattern that no file fits
std::vector<std::string> input_files(const std::vector<std::string>& words, const file_filter& is_input);

}  // namespace zentrix::host
