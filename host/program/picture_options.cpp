#include "host/program/picture_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>

#include "host/batch/output_files.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/files/png.h"
#include "host/objects/value.h"
#include "host/program/session.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"
#include "lens/numbers.h"

namespace zentrix::program {

using host::number_text;

namespace {

constexpr char group[] = "Pictures";

CLI::Option* add_show(CLI::App& command, host::display_mode& shown)
{
    return command
        .add_option_function<std::string>(
            "--show", [&](const std::string& word) { shown = host::parse_display_mode(word).value(); },
            "What pictures show: real, imaginary, modulus, log (of the modulus) or phase")
        ->check(CLI::IsMember({"real", "imaginary", "modulus", "log", "phase"}).description(""))
        ->type_name("MODE");
}

host::grey_limits limits_for(const picture_options& picture)
{
    host::shown_range wanted;
    wanted.shown = picture.shown;
    wanted.shades = picture.shades;
    return host::limits_in(host::system_path(picture.limits_of), wanted);
}

const char* word_for_shown(host::display_mode shown, host::palette shades)
{
    return shades == host::palette::wave ? "wave" : host::word_for(shown);
}

void set_shown(host::figure_style& style, const std::string& word)
{
    if (word == "wave")
        style.shades = host::palette::wave;
    else
        style.shown = host::parse_display_mode(word).value();
}

/// --colour after --show has been read: alone, it shows phases. A real image may hold phases.
void set_coloured(host::figure_style& style, bool is_shown_given)
{
    if (style.shades == host::palette::wave) throw usage_error{"--show wave is in colours already, without --colour"};
    if (!is_shown_given && style.shown == host::display_mode::modulus) style.shown = host::display_mode::phase;
    if (style.shown != host::display_mode::phase && style.shown != host::display_mode::real)
        throw usage_error{"--colour is for phases: use it with --show phase"};
    style.shades = host::palette::cyclic;
}

void set_limits(host::figure_style& style, const std::string& word)
{
    const auto pair = lens::parse_pair(word);
    if (word == "auto" || word == "full") {
        style.rule = word == "auto" ? host::limits_rule::automatic : host::limits_rule::full;
        return;
    }
    if (!pair || !(pair->first < pair->second))
        throw usage_error{"--limits is LOW,HIGH with LOW < HIGH, auto or full, not \"" + word + "\""};
    style.rule = host::limits_rule::given;
    style.limits = {static_cast<float>(pair->first), static_cast<float>(pair->second)};
}

void add_look(CLI::App& command, picture_options& picture)
{
    host::figure_style& style = picture;
    const auto add = [&picture](CLI::Option* option) {
        picture.look.push_back(option->group(group));
        return option;
    };
    auto* const show =
        add(command.add_option_function<std::string>(
                "--show", [&](const std::string& word) { set_shown(style, word); },
                "What pictures show: real, imaginary, modulus, log (of the modulus), phase, or wave (the phase as "
                "colour, the modulus as brightness)"))
            ->check(CLI::IsMember({"real", "imaginary", "modulus", "log", "phase", "wave"}).description(""))
            ->type_name("MODE");
    add(command.add_flag_function(
        "--colour", [&style, show](std::int64_t) { set_coloured(style, show->count() > 0); },
        "Show phases in cyclic colours"));
    auto* const limits =
        add(command.add_option_function<std::string>(
                "--limits", [&](const std::string& word) { set_limits(style, word); },
                "Values shown as black and white (auto: quantiles of 0.1 % and 99.9 %; full: least and largest)"))
            ->type_name("LOW,HIGH|auto|full");
    add(command.add_option("--limits-of", picture.limits_of, "Use the limits of another picture of this program"))
        ->type_name("FILE.png")
        ->excludes(limits);
    add(command.add_flag("--scale-bar", style.scale_bar, "Draw a scale bar on the picture"));
    add(command.add_flag("--colour-bar", style.colour_bar,
                         "Draw the greys with their numbers, or the wheel of the colours"));
    add(command.add_option("--title", style.title, "Text above the picture"))->type_name("TEXT");
    add(command.add_option("--zoom", style.enlargement,
                           "Pixels of the picture along one of the image (default: 1; with a bar or a title up to 512 "
                           "pixels)"))
        ->check(CLI::Range(1, 64).description(""))
        ->type_name("N");
}

/// Throws  usage_error if an option of the look is given
void refuse_look(const picture_options& picture)
{
    for (const CLI::Option* const option : picture.look)
        if (option->count() > 0)
            throw usage_error{option->get_name() + " is for pictures, and none is written: name one with --png FILE"};
}

}  // namespace

void add_display_options(CLI::App& command, host::display_mode& shown, host::palette& shades)
{
    add_show(command, shown);
    command.add_flag_function(
        "--colour", [&](std::int64_t) { shades = host::palette::cyclic; }, "Show phases in cyclic colours");
}

void add_picture_options(CLI::App& command, picture_options& picture)
{
    command.add_option("--png", picture.png, "Also write a picture of the result")->type_name("FILE")->group(group);
    add_look(command, picture);
}

json choice_of(const picture_options& picture)
{
    json look{{"shown", word_for_shown(picture.shown, picture.shades)}};
    if (picture.shades == host::palette::cyclic) look["colour"] = true;
    if (picture.rule == host::limits_rule::full) look["limits"] = "full";
    if (picture.rule == host::limits_rule::given) look["limits"] = {picture.limits.black, picture.limits.white};
    if (!picture.limits_of.empty()) look["limits_of"] = picture.limits_of;
    if (picture.scale_bar) look["scale_bar"] = true;
    if (picture.colour_bar) look["colour_bar"] = true;
    if (!picture.title.empty()) look["title"] = picture.title;
    if (picture.enlargement > 0) look["zoom"] = picture.enlargement;
    return look;
}

bool is_picture_name(const std::string& name)
{
    if (name.size() < 4) return false;
    std::string ending = name.substr(name.size() - 4);
    std::ranges::transform(ending, ending.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending == ".png";
}

void check_picture_name(const std::string& name)
{
    if (!name.empty() && !is_picture_name(name))
        throw host::file_error{host::system_path(name), "cannot be written: expected a name ending in .png"};
}

bool picture_options::is_given(const std::string& option) const
{
    return std::ranges::any_of(look, [&](const auto* one) { return one->get_name() == option && one->count() > 0; });
}

bool has_picture(const std::string& output, const picture_options& picture)
{
    return !picture.png.empty() || is_picture_name(output);
}

void check_names(const std::string& output, const picture_options& picture, host::element_class meaning)
{
    if (output.empty()) throw usage_error{"-o expects the name of a file or folder"};
    host::require_writable_kind(host::system_path(output), meaning);
    host::require_folder(output);
    check_picture_of(picture, output);
}

void check_picture_of(const picture_options& picture, const std::string& output)
{
    check_picture_name(picture.png);
    if (!has_picture(output, picture)) refuse_look(picture);
    host::require_folder(picture.png);
    if (!picture.limits_of.empty()) limits_for(picture);
}

void check_picture(const std::string& output, const picture_options& picture, const host::image& pixels)
{
    if (!has_picture(output, picture)) return;
    try {
        host::require_drawable(pixels, picture);
    } catch (const host::script_error& problem) {
        throw host::file_error{host::system_path(picture.png.empty() ? output : picture.png), problem.what()};
    }
}

std::optional<host::shown_range> write_result(const std::string& output, const picture_options& picture,
                                              const host::image& pixels, const host::picture_texts& facts,
                                              const host::image* other)
{
    const host::image& in_picture = other != nullptr ? *other : pixels;
    check_picture(output, picture, in_picture);
    std::optional<host::shown_range> shown;
    host::figure_style style{static_cast<const host::figure_style&>(picture)};
    if (!picture.limits_of.empty()) {
        style.rule = host::limits_rule::given;
        style.limits = limits_for(picture);
    }
    const auto write = [&](const std::string& name) {
        shown = host::write_png(host::system_path(name), in_picture, style, facts);
    };
    if (is_picture_name(output))
        write(output);
    else
        host::write_image(host::system_path(output), pixels);
    if (!picture.png.empty()) write(picture.png);
    return shown;
}

std::string one_line(const host::shown_range& range)
{
    const std::string black = number_text(range.limits.black), white = number_text(range.limits.white);
    std::string line = range.shades == host::palette::cyclic ? "phase in cyclic colours"
                       : range.shades == host::palette::wave
                           ? "wave, modulus from 0 (black) to " + white + " (bright)"
                           : range.quantity + " from " + black + " (black) to " + white + " (white)";
    if (range.not_a_number > 0)
        line += ", " + std::to_string(range.not_a_number) + " pixels that are not a number in " +
                (range.shades == host::palette::grey ? "vermilion" : "white");
    return line;
}

json as_json(const host::shown_range& range)
{
    json shown{{"shown", word_for_shown(range.shown, range.shades)}, {"quantity", range.quantity}};
    if (range.shades != host::palette::cyclic) {
        shown["black"] = range.limits.black;
        shown["white"] = range.limits.white;
    }
    shown["not_a_number"] = range.not_a_number;
    return shown;
}

}  // namespace zentrix::program
