#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "host/files/png_text.h"
#include "host/objects/image.h"
#include "host/parameters/digest.h"
#include "host/parameters/parameter_set.h"

/// The record of a result: a JSON file next to it that says how the result was made. read_parameters reads it.
/// docs/parameters.md describes the members.
///
///     const provenance made{.command = words, .inputs = {input_of("wave.npy")}, .parameters = set};
///     const auto record = record_path({"out.npy"});            // before the work: may throw
///     write_result(..., texts_of(made));
///     write_record(record, made, {{"out.npy", result.get()}});
namespace zentrix::host {

/// A file from which a result was made.
struct recorded_input
{
    std::string name;  ///< as the user gave it, UTF-8
    fingerprint contents;
    std::optional<std::uint32_t> plane = {};  ///< of a stack, from 0; nothing: all of the file
};

/// Reads the file for its fingerprint. Throws  file_error
recorded_input input_of(const std::string& name);

/// How results were made.
struct provenance
{
    std::vector<std::string> command;  ///< the words of the command line that makes this result, UTF-8; empty: none
    std::vector<recorded_input> inputs;
    std::optional<parameter_set> parameters = {};
    nlohmann::ordered_json program = {};  ///< see program_facts
    nlohmann::ordered_json more = {};     ///< an object of further members, such as {"removed": true}; or null
    nlohmann::ordered_json found = {};    ///< measured on the way, does not decide on the result; null: nothing
};

/// Name and version of the program, file name and digest of the library that computed, and whether it used vector
/// instructions. An empty path: no library was used. Throws  file_error
nlohmann::ordered_json program_facts(const std::filesystem::path& library, bool uses_simd);

/// A result, written to its file already.
struct recorded_result
{
    std::filesystem::path file;
    const image* pixels;
};

/// Where the record of a result may be, the usual place first: "out.json" and "out.npy.json" for "out.npy".
std::vector<std::filesystem::path> places_of_record(const std::filesystem::path& result);

/// Where the record of results that are made together will be: "out.json" for "out.npy" (the first of them), or
/// "out.npy.json" if there is an "out.json" that is something else, such as a file of parameters or the record of
/// another result.
/// Throws  file_error when there is something else of both names
std::filesystem::path record_path(const std::vector<std::filesystem::path>& results);

/// Writes the record as a pending_file. Reads the results for their fingerprints, so it never describes a result that
/// is not there. An image without a scale is recorded with the pixel size and voltage of the parameters.
/// Throws  file_error
void write_record(const std::filesystem::path& record, const provenance& made,
                  const std::vector<recorded_result>& results);

/// Whether the results were made in the same way before, by any version of the program: there is a record of them with
/// the same inputs, parameters and further members, and all files are there with their recorded size. A record that is
/// older than a result does not count: it may be of an earlier result, if the program was stopped between writing one
/// and the other.
bool is_recorded(const std::vector<std::filesystem::path>& results, const provenance& made);

/// Whether there is a record that names the file as its result.
bool has_record(const std::filesystem::path& result);

/// For files of parameters. Throws  file_error when the file is the record of a result that exists, because its scale
///         would be lost
void require_no_record(const std::filesystem::path& file);

/// Whether the record of a file says that it was made from another file that still is in the same folder. Where a
/// folder is the input, such files are results and not inputs.
bool is_made_from_neighbour(const std::filesystem::path& file);

/// The essentials for a picture: Software, Command, Parameters (JSON), Wavelength and Input.
picture_texts texts_of(const provenance& made);

/// Pixel size, unit and voltage of an image file from its record: "x.json" or "x.npy.json" for "x.npy", if that
/// describes a file of this name, size in bytes, type and shape. Nothing if there is no such record.
std::optional<calibration> recorded_scale(const std::filesystem::path& file, const image& pixels);

}  // namespace zentrix::host
