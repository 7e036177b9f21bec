#include "host/program/argument.h"

#include <complex>
#include <cstdint>
#include <limits>

#include "host/objects/tag_group.h"
#include "host/parameters/recorded_image.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

using host::parse_number;

std::optional<std::complex<double>> parse_complex(const std::string& word)
{
    const auto comma = word.find(',');
    const auto real = parse_number<double>(word.substr(0, comma));
    const auto imaginary = comma == std::string::npos ? 0.0 : parse_number<double>(word.substr(comma + 1));
    if (!real || !imaginary) return std::nullopt;
    return std::complex{*real, *imaginary};
}

bool in_range(std::int64_t value, host_kind kind)
{
    switch (kind) {
        case HOST_INT32:
            return value >= std::numeric_limits<std::int32_t>::min() &&
                   value <= std::numeric_limits<std::int32_t>::max();
        case HOST_UINT32: return value >= 0 && value <= std::int64_t{std::numeric_limits<std::uint32_t>::max()};
        default: return value >= 0;
    }
}

constexpr std::string_view list_mark = "list:";
constexpr std::string_view start_mark = "_=";  // of an output parameter with a start value
constexpr char protection = '\x01';

/// The type of the value in an output parameter's cell.
host::prototype_type cell_type_of(host::prototype_type type)
{
    type.kind = type.cell_kind;
    return type;
}

bool is_list(const std::string& word) { return word.starts_with(list_mark); }

host::tag_group_ref read_list(const std::string& word)
{
    auto list = host::memory_tag_group::make_list();
    const std::string items = word.substr(list_mark.size());
    for (std::size_t begin = 0; begin < items.size();) {
        const auto end = std::min(items.find(',', begin), items.size());
        list->insert(list->count(), items.substr(begin, end - begin));
        begin = end + 1;
    }
    return list;
}

std::string count_of(std::size_t arguments)
{
    return std::to_string(arguments) + (arguments == 1 ? " argument" : " arguments");
}

/// The sum over all words; nothing when a word does not fit, and then `misfit` is its index.
std::optional<int> total_suitability(const host::prototype& signature, const std::vector<std::string>& words,
                                     std::size_t& misfit)
{
    int total = 0;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto cost = suitability(words[i], signature.parameter_of(i).type);
        if (!cost) {
            misfit = i;
            return std::nullopt;
        }
        total += *cost;
    }
    return total;
}

std::string misfit_text(const host::prototype& signature, const std::string& word, std::size_t index)
{
    const auto& parameter = signature.parameter_of(index);
    return signature.name + ", argument " + std::to_string(index + 1) + " (" + parameter.type.word +
           (parameter.name.empty() ? "" : " " + parameter.name) + "): expected " + expected_for(parameter.type) +
           ", not \"" + word + "\"";
}

}  // namespace

std::string protect_number(const std::string& word)
{
    const bool is_taken_for_option = word.size() > 1 && word[0] == '-' && (word[1] < '0' || word[1] > '9');
    return is_taken_for_option && parse_complex(word) ? protection + word : word;
}

std::string unprotect_number(const std::string& word)
{
    return !word.empty() && word.front() == protection ? word.substr(1) : word;
}

std::optional<int> suitability(const std::string& word, const host::prototype_type& type)
{
    const auto if_true = [](bool fits, int cost = 0) { return fits ? std::optional{cost} : std::nullopt; };
    switch (type.kind) {
        case HOST_INT32:
        case HOST_UINT32:
        case HOST_UINT64: {
            const auto number = parse_number<std::int64_t>(word);
            return if_true(number && in_range(*number, type.kind));
        }
        case HOST_FLOAT32:
        case HOST_FLOAT64: return if_true(parse_number<double>(word).has_value());
        case HOST_COMPLEX: return if_true(parse_complex(word).has_value(), parse_number<double>(word) ? 1 : 0);
        case HOST_STRING: return 0;
        // A file may be called "2", but an overload with a number there is preferred.
        case HOST_IMAGE: return if_true(!word.empty(), parse_number<double>(word) ? 2 : 0);
        case HOST_TAG_GROUP: return if_true(word == "null" || is_list(word));
        case HOST_OUTPUT:
            if (word.starts_with(start_mark)) return suitability(word.substr(start_mark.size()), cell_type_of(type));
            return if_true(word == "_" || word == "null");
        default: return if_true(word == "null");
    }
}

std::string expected_for(const host::prototype_type& type)
{
    switch (type.kind) {
        case HOST_INT32: return "a whole number from -2147483648 to 2147483647";
        case HOST_UINT32: return "a whole number from 0 to 4294967295";
        case HOST_UINT64: return "a whole number of 0 or more";
        case HOST_FLOAT32:
        case HOST_FLOAT64: return "a number";
        case HOST_COMPLEX: return "a complex number as re,im";
        case HOST_STRING: return "a text";
        case HOST_IMAGE: return "a file or null";
        case HOST_TAG_GROUP: return "null or a list of texts as list:a,b,c";
        case HOST_OUTPUT: return "_ or _=START, where START is " + expected_for(cell_type_of(type)) + "; or null";
        default: return "null";
    }
}

host::script_value read_argument(const std::string& word, const host::prototype_type& type, read_images& images)
{
    switch (type.kind) {
        case HOST_INT32:
        case HOST_UINT32:
        case HOST_UINT64: return parse_number<std::int64_t>(word).value();
        case HOST_FLOAT32:
        case HOST_FLOAT64: return parse_number<double>(word).value();
        case HOST_COMPLEX: return parse_complex(word).value();
        case HOST_STRING: return word;
        case HOST_IMAGE: {
            if (word == "null") return {};
            host::image_ref& known = images[word];
            if (!known) known = host::read_recorded_image(host::system_path(word));
            return host::object_ref{known};
        }
        case HOST_TAG_GROUP: return word == "null" ? host::script_value{} : host::object_ref{read_list(word)};
        case HOST_OUTPUT:
            if (word == "null") return {};
            if (word == "_") return host::make_cell();
            return host::make_cell(read_argument(word.substr(start_mark.size()), cell_type_of(type), images));
        default: return {};
    }
}

host::function_ref choose_overload(const std::string& name, const std::vector<host::function_ref>& overloads,
                                   const std::vector<std::string>& words)
{
    if (overloads.empty())
        throw host::script_error{"there is no script function " + name + "; \"zentrix functions\" lists them all"};
    host::function_ref best;
    int best_cost = std::numeric_limits<int>::max();
    std::string misfits, prototypes;
    for (const auto& overload : overloads) {
        const host::prototype& signature = overload->signature();
        prototypes += "\n  " + signature.text;
        if (!signature.takes(words.size())) continue;
        std::size_t misfit = 0;
        const auto cost = total_suitability(signature, words, misfit);
        if (!cost)
            misfits += (misfits.empty() ? "" : "\n  ") + misfit_text(signature, words[misfit], misfit);
        else if (*cost < best_cost)
            best = overload, best_cost = *cost;
    }
    if (best) return best;
    if (!misfits.empty()) throw host::script_error{misfits};
    throw host::script_error{name + " does not take " + count_of(words.size()) + ":" + prototypes};
}

}  // namespace zentrix::program
