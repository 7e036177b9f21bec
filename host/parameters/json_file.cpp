#include "host/parameters/json_file.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <string_view>
#include <vector>

#include "host/files/file_error.h"
#include "host/files/input_file.h"
#include "host/files/pending_file.h"

namespace zentrix::host {

namespace {

using json = nlohmann::ordered_json;

constexpr std::size_t largest_file = 1 << 20;
constexpr std::size_t deepest = 32;

std::string contents_of(const std::filesystem::path& file)
{
    std::ifstream stream = open_input(file);
    std::string text(largest_file + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (stream.bad()) throw file_error{file, "cannot be read"};
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (text.size() > largest_file) throw file_error{file, "is larger than 1 MiB; is it a file of parameters?"};
    return text;
}

/// What the parser does not check. Its own recursion has no limit on what it builds.
class structure_check
{
  public:
    explicit structure_check(const std::filesystem::path& file) : file_{file} {}

    bool operator()(json::parse_event_t event, const json& parsed)
    {
        using kind = json::parse_event_t;
        if (event == kind::object_start || event == kind::array_start) {
            if (names_.size() == deepest)
                throw file_error{file_, "objects and arrays are nested more than " + std::to_string(deepest) + " deep"};
            names_.emplace_back();
        } else if (event == kind::object_end || event == kind::array_end) {
            names_.pop_back();
        } else if (event == kind::key && !names_.back().insert(parsed.get<std::string>()).second) {
            throw file_error{file_, shown_name(parsed.get<std::string>()) + " is given twice"};
        } else if (event == kind::value && parsed.is_string() &&
                   parsed.get_ref<const std::string&>().find('\0') != std::string::npos) {
            throw file_error{file_, "has a text with a null character"};  // which would end messages that show it
        }
        return true;
    }

  private:
    const std::filesystem::path& file_;
    std::vector<std::set<std::string>> names_;  ///< of each open object
};

/// "line 3, column 5" of the byte with this number, from 1.
std::string place_of(const std::string& text, std::size_t byte)
{
    const std::string_view before{text.data(), std::min(byte == 0 ? 0 : byte - 1, text.size())};
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const auto start = before.rfind('\n');
    const auto column = before.size() - (start == std::string_view::npos ? 0 : start + 1) + 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

std::string shortened(std::string text)
{
    constexpr std::size_t longest = 60;
    if (text.size() <= longest) return text;
    std::size_t end = longest;
    while ((static_cast<unsigned char>(text[end]) & 0xc0) == 0x80) --end;  // between two UTF-8 characters
    return text.substr(0, end) + "...";
}

std::string in_one_line(const json& value)
{
    if (value.is_primitive()) return value.dump(-1, ' ', false, json::error_handler_t::replace);
    const bool is_object = value.is_object();
    std::string text;
    for (const auto& member : value.items()) {
        if (!text.empty()) text += ", ";
        if (is_object) text += in_one_line(member.key()) + ": ";
        text += in_one_line(member.value());
    }
    return is_object ? "{" + text + "}" : "[" + text + "]";
}

/// The value with its parts on lines of their own, unless they are plain and fit into one.
std::string laid_out(const json& value, std::size_t indent)
{
    constexpr std::size_t longest_line = 110;
    const auto is_plain = [](const json& part) { return part.is_primitive(); };
    std::string line = in_one_line(value);
    if (value.empty() || value.is_primitive()) return line;
    const bool fits = value.is_array() || indent + line.size() <= longest_line;
    if (indent > 0 && fits && std::ranges::all_of(value, is_plain)) return line;
    const std::string next(indent + 2, ' ');
    std::string text;
    for (const auto& member : value.items()) {
        text += (text.empty() ? "\n" : ",\n") + next;
        if (value.is_object()) text += in_one_line(member.key()) + ": ";
        text += laid_out(member.value(), indent + 2);
    }
    text += "\n" + std::string(indent, ' ');
    return value.is_object() ? "{" + text + "}" : "[" + text + "]";
}

}  // namespace

json read_json(const std::filesystem::path& file) { return parse_json(contents_of(file), file); }

json parse_json(const std::string& text, const std::filesystem::path& name)
{
    structure_check check{name};
    try {
        return json::parse(text,
                           [&](int, json::parse_event_t event, const json& parsed) { return check(event, parsed); });
    } catch (const json::parse_error& problem) {
        throw file_error{name, "is not valid JSON at " + place_of(text, problem.byte)};
    } catch (const json::out_of_range&) {
        throw file_error{name, "has a number that is too large"};
    }
}

std::string json_text(const json& value) { return laid_out(value, 0) + "\n"; }

void write_json(const std::filesystem::path& file, const json& value)
{
    const std::string text = json_text(value);
    pending_file pending{file};
    pending.write(text.data(), text.size());
    pending.commit();
}

std::string shown(const json& value) { return shortened(value.dump(-1, ' ', false, json::error_handler_t::replace)); }

std::string shown_name(const std::string& name)
{
    const std::string quoted = json(name).dump(-1, ' ', false, json::error_handler_t::replace);
    return shortened(quoted.substr(1, quoted.size() - 2));
}

}  // namespace zentrix::host
