#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "host/objects/image.h"
#include "host/parameters/parameter_set.h"
#include "host/parameters/record.h"

/// The entries of results in a record.
namespace zentrix::host {

/// How a record names a result: relative to the record's folder, with slashes, UTF-8.
std::string name_in_record(const std::filesystem::path& record, const std::filesystem::path& result);

/// File, size, digest, type, shape and scale. An image without a scale gets that of the parameters.
/// Throws  file_error when the file cannot be read
nlohmann::ordered_json entry_for(const std::filesystem::path& record, const recorded_result& result,
                                 const parameter_set& parameters);

/// Whether the file has the size in bytes that an entry of a record has. False for null.
bool has_recorded_size(const nlohmann::ordered_json& entry, const std::filesystem::path& file);

/// Whether an entry has the type and shape of an image.
bool describes(const nlohmann::ordered_json& entry, const image& pixels);

/// The scale in an entry. Nothing if it has none, or one with wrong types or numbers that are no scale.
std::optional<calibration> scale_in(const nlohmann::ordered_json& entry);

}  // namespace zentrix::host
