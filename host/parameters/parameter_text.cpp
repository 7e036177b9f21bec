#include "host/parameters/parameter_text.h"

#include <span>
#include <sstream>
#include <stdexcept>

#include "host/parameters/json_file.h"
#include "host/parameters/parameter_entries.h"
#include "host/parameters/parameter_file.h"
#include "host/text/number_text.h"
#include "lens/numbers.h"
#include "lens/plausible_units.h"

namespace zentrix::host {

namespace {

struct number_option
{
    const char* name;
    std::optional<double> parameter_set::*value;
};

constexpr number_option scale_options[] = {{"kv", &parameter_set::kilovolts},
                                           {"wavelength", &parameter_set::wavelength_nm},
                                           {"pixel", &parameter_set::pixel_nm}};
constexpr number_option width_options[] = {{"focus-spread", &parameter_set::focus_spread_nm},
                                           {"convergence", &parameter_set::convergence_mrad},
                                           {"vibration", &parameter_set::vibration_nm}};

std::string pair_text(double first, double second) { return number_text(first) + ", " + number_text(second); }

std::string complex_text(std::complex<double> value)
{
    return "complex( " + pair_text(value.real(), value.imag()) + " )";
}

[[noreturn]] void refuse_word(const std::string& word)
{
    throw std::invalid_argument{"\"" + shown_name(word) + "\" is no option with parameters."};
}

double number_in(const std::string& option, const std::string& word)
{
    const auto number = lens::parse_number(word);
    if (!number) throw std::invalid_argument{option + " is a number, not \"" + shown_name(word) + "\"."};
    return *number;
}

/// Throws  std::invalid_argument for a number that is not possible or usually in another unit
double plausible(const std::string& name, double number)
{
    if (name == "kv") lens::check_kilovolts(number);
    if (name == "wavelength") lens::check_wavelength(number);
    if (name == "pixel") lens::check_pixel_size(number);
    if (number < 0) throw std::invalid_argument{"--" + name + " must not be negative."};
    return number;
}

/// Whether the name is one of the options with a number.
bool read_number(parameter_set& set, const std::string& name, const std::string& word)
{
    for (const auto& options : {std::span{scale_options}, std::span{width_options}})
        for (const auto& [option, value] : options)
            if (name == option) return set.*value = plausible(name, number_in("--" + name, word)), true;
    return false;
}

void read_option(parameter_set& set, const std::string& name, const std::string& word)
{
    if (read_number(set, name, word)) return;
    for (const auto& about : lens::all_coefficients)
        if (name == about.name) {
            set.coefficients[about.which] = lens::parse_coefficient(about.which, word);
            return;
        }
    if (name == "tilt") {
        const auto pair = lens::parse_pair(word);
        if (!pair) refuse_word("--tilt " + word);
        set.tilt_mrad = {pair->first, pair->second};
        return;
    }
    if (name != "envelope") refuse_word("--" + name);
    for (const auto envelope : {lens::damping::automatic, lens::damping::on, lens::damping::off})
        if (word == name_of(envelope)) {
            set.envelope = envelope;
            return;
        }
    refuse_word("--envelope " + word);
}

/// Words before the first option are the command, and -o is followed by a file.
parameter_set parameters_in_options(const std::string& text)
{
    parameter_set set;
    std::istringstream words{text};
    std::string word, value;
    bool any = false;
    while (words >> word) {
        if (word == "-o") {
            words >> word;
            continue;
        }
        if (!word.starts_with("--")) {
            if (any || !(word == "zentrix" || word == "correct" || word.find('.') != std::string::npos))
                refuse_word(word);
            continue;
        }
        any = true;
        std::string name = word.substr(2);
        if (const auto equals = name.find('='); equals != std::string::npos) {
            value = name.substr(equals + 1);
            name.resize(equals);
        } else if (!(words >> value)) {
            throw std::invalid_argument{word + " has no value."};
        }
        read_option(set, name, value);
    }
    if (!any) throw std::invalid_argument{"The text has no parameters."};
    return set;
}

}  // namespace

std::vector<std::string> option_words(const parameter_set& set)
{
    std::vector<std::string> words;
    const auto add = [&](std::span<const number_option> options) {
        for (const auto& [name, value] : options)
            if (set.*value) words.insert(words.end(), {"--" + std::string{name}, number_text(*(set.*value))});
    };
    add(scale_options);
    for (const auto& [which, value] : set.coefficients) {
        const auto& about = lens::traits(which);
        words.insert(words.end(), {"--" + std::string{about.name}, number_text(value.modulus)});
        if (about.symmetry != 0) words.back() += "@" + number_text(value.angle_degrees);
    }
    add(width_options);
    if (set.tilt_mrad)
        words.insert(words.end(),
                     {"--tilt", number_text(set.tilt_mrad->real()) + "," + number_text(set.tilt_mrad->imag())});
    if (set.envelope) words.insert(words.end(), {"--envelope", name_of(*set.envelope)});
    return words;
}

std::string option_text(const parameter_set& set)
{
    std::string text;
    for (const std::string& word : option_words(set)) text += (text.empty() ? "" : " ") + word;
    return text;
}

std::string python_text(const parameter_set& set)
{
    std::string text = "zentrix.correct(wave";
    const auto add = [&](std::string name, const std::string& value) {
        for (char& letter : name)
            if (letter == '-') letter = '_';
        text += ", " + name + "=" + value;
    };
    const auto add_numbers = [&](std::span<const number_option> options) {
        for (const auto& [name, value] : options)
            if (set.*value) add(name, number_text(*(set.*value)));
    };
    add_numbers(scale_options);
    for (const auto& [which, value] : set.coefficients) {
        const auto& about = lens::traits(which);
        add(std::string{about.name}, about.symmetry == 0 ? number_text(value.modulus)
                                                         : "(" + pair_text(value.modulus, value.angle_degrees) + ")");
    }
    add_numbers(width_options);
    if (set.tilt_mrad) add("tilt", "(" + pair_text(set.tilt_mrad->real(), set.tilt_mrad->imag()) + ")");
    if (set.envelope) add("envelope", "\"" + std::string{name_of(*set.envelope)} + "\"");
    return text + ")";
}

std::string script_text(const parameter_set& set, int width, int height)
{
    const auto a = lens::arguments_for(optics_of(set), width, height, lens::direction::remove,
                                       set.envelope.value_or(lens::damping::automatic));
    std::string text = "ZXWTFMulDLL( spectrum";
    const auto add = [&](const std::string& argument) { text += ", " + argument; };
    const auto add_complex = [&](std::initializer_list<std::complex<double>> values) {
        for (const auto value : values) add(complex_text(value));
    };
    for (const double value : {a.lambda, a.step, a.c20}) add(number_text(value));
    add_complex({a.c22});
    for (const double value : {a.c40, a.c60}) add(number_text(value));
    add_complex({a.c31, a.c33, a.c42, a.c44, a.c51, a.c53, a.c55, a.c62, a.c64, a.c66});
    for (const double value : {a.c2s, a.bdiv, a.vib}) add(number_text(value));
    add(a.envelope ? "1" : "0");
    add_complex({a.tilt});
    return text + ", spectrum )";
}

parameter_set parameters_in_text(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first != std::string::npos && text[first] == '{') return parse_parameters(text, "clipboard");
    return parameters_in_options(text);
}

}  // namespace zentrix::host
