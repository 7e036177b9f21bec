#include "host/parameters/record.h"

#include <algorithm>
#include <system_error>

#include "host/files/file_error.h"
#include "host/parameters/json_file.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/recorded_result.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::host {

namespace fs = std::filesystem;
using json = nlohmann::ordered_json;

namespace {

constexpr char program_name[] = "zentrix";

/// The only element itself, otherwise all.
json one_or_list(json list) { return list.size() == 1 ? json(list[0]) : list; }

/// Its elements; those of a list, or the only one.
std::vector<json> elements_of(const json& object, const char* member)
{
    if (!object.contains(member)) return {};
    const json& value = object[member];
    return value.is_array() ? value.get<std::vector<json>>() : std::vector{value};
}

/// The record in a file; null if there is none, or something else.
json record_in(const fs::path& file)
try {
    std::error_code ignored;
    if (!fs::is_regular_file(file, ignored)) return nullptr;
    json root = read_json(file);
    const bool is_ours = root.is_object() && root.contains("program") && root["program"].is_object() &&
                         root["program"].value("name", json{}) == program_name && root.contains("result");
    return is_ours ? root : nullptr;
} catch (const file_error&) {
    return nullptr;  // no JSON, or too large for a record
}

/// The entry of a result in a record; null if the record does not have it.
json entry_of(const json& record, const fs::path& file, const fs::path& result)
{
    for (const json& entry : elements_of(record, "result"))
        if (entry.is_object() && entry.value("file", json{}) == name_in_record(file, result)) return entry;
    return nullptr;
}

/// Whether a record may be replaced by that of `results`: it is of one of them, or of files that are gone.
bool is_replaceable(const json& record, const fs::path& file, const std::vector<fs::path>& results)
{
    if (record.is_null()) return false;
    const auto is_of = [&](const fs::path& result) { return !entry_of(record, file, result).is_null(); };
    if (std::ranges::any_of(results, is_of)) return true;
    const auto entries = elements_of(record, "result");
    return std::ranges::none_of(entries, [&](const json& entry) {
        std::error_code ignored;
        const json name = entry.is_object() ? entry.value("file", json{}) : json{};
        return !name.is_string() || fs::exists(file.parent_path() / system_path(name.get<std::string>()), ignored);
    });
}

/// Whether all files are there and none is newer than their record.
bool are_older(const std::vector<fs::path>& results, const fs::path& record)
{
    std::error_code missing;
    const auto recorded = fs::last_write_time(record, missing);
    return !missing && std::ranges::all_of(results, [&](const fs::path& result) {
        const auto written = fs::last_write_time(result, missing);
        return !missing && written <= recorded;
    });
}

json as_json(const recorded_input& input)
{
    json entry{{"name", input.name}, {"size", input.contents.bytes}, {"digest", input.contents.digest}};
    if (input.plane) entry["plane"] = *input.plane;
    return entry;
}

/// All members but "command", "found", "program" and "result": what decides on the pixels of the result.
json essentials_of(const provenance& made)
{
    json record = json::object();
    if (made.parameters) {
        record["parameters"] = host::as_json(*made.parameters);
        const auto& set = *made.parameters;
        if (set.wavelength_nm || set.kilovolts) record["wavelength_nm"] = wavelength_of(set);
    }
    if (made.more.is_object()) record.update(made.more);
    json inputs = json::array();
    for (const auto& input : made.inputs) inputs.push_back(as_json(input));
    if (!inputs.empty()) record["input"] = one_or_list(std::move(inputs));
    return record;
}

/// The command as it is typed in a POSIX shell.
std::string as_typed(const std::vector<std::string>& words)
{
    const char plain[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789@%+=:,./_-";
    std::string text;
    for (const std::string& word : words) {
        if (!text.empty()) text += ' ';
        if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
            text += word;
            continue;
        }
        text += '\'';
        for (const char letter : word) text += letter == '\'' ? std::string{"'\\''"} : std::string{letter};
        text += '\'';
    }
    return text;
}

}  // namespace

recorded_input input_of(const std::string& name) { return {name, fingerprint_of(system_path(name))}; }

json program_facts(const fs::path& library, bool uses_simd)
{
    json facts{{"name", program_name}, {"version", ZENTRIX_VERSION}};
    if (library.empty()) return facts;
    facts["library"] = {{"name", utf8_path(library.filename())}, {"digest", fingerprint_of(library).digest}};
    facts["simd"] = uses_simd;
    return facts;
}

std::vector<fs::path> places_of_record(const fs::path& result)
{
    fs::path usual = result, longer = result;
    usual.replace_extension(".json");
    longer += ".json";
    return {usual, longer};
}

fs::path record_path(const std::vector<fs::path>& results)
{
    const auto places = places_of_record(results.at(0));
    for (const fs::path& place : places) {
        std::error_code ignored;
        if (!fs::exists(place, ignored) || is_replaceable(record_in(place), place, results)) return place;
    }
    throw file_error{places.front(), "is not a record of " + utf8_path(results[0].filename()) + ", and neither is " +
                                         utf8_path(places.back().filename()) +
                                         ". Rename one of them, so that the record can be written"};
}

void write_record(const fs::path& record, const provenance& made, const std::vector<recorded_result>& results)
{
    json root = json::object();
    if (!made.command.empty()) root["command"] = made.command;
    root.update(essentials_of(made));
    if (!made.found.is_null()) root["found"] = made.found;
    root["program"] = made.program.is_object() ? made.program : program_facts({}, false);
    json list = json::array();
    for (const auto& result : results)
        list.push_back(entry_for(record, result, made.parameters.value_or(parameter_set{})));
    root["result"] = one_or_list(std::move(list));
    write_json(record, root);
}

bool is_recorded(const std::vector<fs::path>& results, const provenance& made)
{
    const json expected = essentials_of(made);
    return std::ranges::any_of(places_of_record(results.at(0)), [&](const fs::path& place) {
        json record = record_in(place);
        if (record.is_null() || !are_older(results, place)) return false;
        const bool are_there = std::ranges::all_of(results, [&](const fs::path& result) {
            return has_recorded_size(entry_of(record, place, result), result);
        });
        for (const char* own : {"command", "found", "program", "result"}) record.erase(own);
        return are_there && nlohmann::json(record) == nlohmann::json(expected);  // in any order
    });
}

bool has_record(const fs::path& result)
{
    return std::ranges::any_of(places_of_record(result), [&](const fs::path& place) {
        return !entry_of(record_in(place), place, result).is_null();
    });
}

void require_no_record(const fs::path& file)
{
    for (const json& entry : elements_of(record_in(file), "result")) {
        const json name = entry.is_object() ? entry.value("file", json{}) : json{};
        std::error_code ignored;
        if (name.is_string() && fs::exists(file.parent_path() / system_path(name.get<std::string>()), ignored))
            throw file_error{file, "is the record of " + name.get<std::string>() + "; choose another name"};
    }
}

bool is_made_from_neighbour(const fs::path& file)
{
    return std::ranges::any_of(places_of_record(file), [&](const fs::path& place) {
        const json record = record_in(place);
        if (entry_of(record, place, file).is_null()) return false;
        const auto inputs = elements_of(record, "input");
        const json input = inputs.empty() ? json{} : inputs.front();
        if (!input.is_object()) return false;
        const json name = input.value("name", json{});
        if (!name.is_string()) return false;
        const fs::path neighbour = fs::path{file}.replace_filename(system_path(name.get<std::string>()).filename());
        std::error_code ignored;
        return neighbour != file && fs::is_regular_file(neighbour, ignored) &&
               fingerprint_of(neighbour).digest == input.value("digest", json{});
    });
}

picture_texts texts_of(const provenance& made)
{
    const json program = made.program.is_object() ? made.program : program_facts({}, false);
    const auto text_in = [&](const char* member) {
        const json value = program.value(member, json{});
        return value.is_string() ? value.get<std::string>() : std::string{};
    };
    picture_texts texts{{"Software", text_in("name") + " " + text_in("version")}, {"Command", as_typed(made.command)}};
    const json essentials = essentials_of(made);
    if (made.parameters) texts.emplace_back("Parameters", essentials["parameters"].dump());
    if (essentials.contains("wavelength_nm"))
        texts.emplace_back("Wavelength", number_text(essentials["wavelength_nm"].get<double>()) + " nm");
    for (const auto& input : made.inputs)
        texts.emplace_back(
            "Input", input.name + ", " + std::to_string(input.contents.bytes) + " bytes, " + input.contents.digest);
    return texts;
}

std::optional<calibration> recorded_scale(const fs::path& file, const image& pixels)
{
    for (const fs::path& place : places_of_record(file)) {
        const json entry = entry_of(record_in(place), place, file);
        if (has_recorded_size(entry, file) && describes(entry, pixels)) return scale_in(entry);
    }
    return std::nullopt;
}

}  // namespace zentrix::host
