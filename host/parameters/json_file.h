#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

/// JSON files that people and other programs wrote.
namespace zentrix::host {

/// Reads a file of at most 1 MiB whose objects and arrays are nested at most 32 deep.
/// Throws  file_error; for bad syntax with line and column, naming an entry that an object has twice, and for a text
///         with a null character
nlohmann::ordered_json read_json(const std::filesystem::path& file);

/// The same for a text of any length. `name` is its name in errors. Throws as read_json
nlohmann::ordered_json parse_json(const std::string& text, const std::filesystem::path& name);

/// JSON as text, indented; lists of plain values and small objects are on one line. Ends with a line feed.
std::string json_text(const nlohmann::ordered_json& value);

/// Writes the json_text as a pending_file. Throws  file_error
void write_json(const std::filesystem::path& file, const nlohmann::ordered_json& value);

/// The value as JSON for messages, at most about 60 bytes.
std::string shown(const nlohmann::ordered_json& value);
/// A name from a file for messages, shortened likewise; control characters become escapes.
std::string shown_name(const std::string& name);

}  // namespace zentrix::host
