#include "lens/panel_tags.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace zentrix::lens {

namespace {

struct step
{
    coefficient which;
    double modulus;  ///< in the coefficient's unit
};

constexpr std::array<step, coefficient_count> steps{{
    {coefficient::C1, 1},
    {coefficient::A1, 0.5},
    {coefficient::B2, 5},
    {coefficient::A2, 10},
    {coefficient::C3, 0.01},
    {coefficient::S3, 0.1},
    {coefficient::A3, 0.5},
    {coefficient::B4, 5},
    {coefficient::D4, 5},
    {coefficient::A4, 20},
    {coefficient::C5, 1},
    {coefficient::A5, 1},
    {coefficient::R5, 1},
    {coefficient::S5, 1},
}};
constexpr double angle_step_degrees = 5;

void require(bool holds, coefficient which, const char* text)
{
    if (!holds) throw std::invalid_argument{std::string{traits(which).name} + text};
}

double modulus_for_tag(coefficient which, double modulus)
{
    require(std::abs(modulus) <= std::numeric_limits<float>::max(), which, " is too large for the panel.");
    return modulus;
}

/// 0 to 359.
double angle_for_tag(coefficient which, double degrees)
{
    require(std::trunc(degrees) == degrees, which, " needs an angle of whole degrees on the panel.");
    return panel_angle(degrees);
}

/// The shortest decimal number that rounds to `value`.
double as_typed(float value)
{
    char text[64];
    const auto written = std::to_chars(text, text + sizeof text, value);
    double number = value;
    std::from_chars(text, written.ptr, number);
    return number;
}

}  // namespace

double panel_angle(double degrees)
{
    const double rest = std::fmod(degrees, 360);
    return rest < 0 ? rest + 360 : rest;
}

std::string modulus_key(coefficient which)
{
    const auto& about = traits(which);
    return (about.symmetry == 0 ? "" : "Mod") + std::string{about.name};
}

std::string angle_key(coefficient which)
{
    const auto& about = traits(which);
    return about.symmetry == 0 ? std::string{} : "Ang" + std::string{about.name};
}

std::vector<panel_tag> panel_tags(const aberrations& lens, int mode)
{
    std::vector<panel_tag> tags;
    for (const auto& [which, modulus] : steps) {
        tags.push_back({modulus_key(which), false, modulus_for_tag(which, lens[which].modulus)});
        tags.push_back({modulus_key(which) + "Accel", false, modulus});
        if (traits(which).symmetry == 0) continue;
        tags.push_back({angle_key(which), true, angle_for_tag(which, lens[which].angle_degrees)});
        tags.push_back({angle_key(which) + "Accel", true, angle_step_degrees});
    }
    for (const char* page : {"Rotation", "Basic", "Third", "Fourth", "Fifth"})
        tags.push_back({std::string{page} + "PaneIsEnabled", true, 1});
    tags.push_back({"ApplyIsEnabled", true, 1});
    tags.push_back({has_pctf_key, true, 0});
    tags.push_back({display_mode_key, true, static_cast<double>(mode)});
    return tags;
}

aberrations read_aberrations(const std::function<float(const std::string& key)>& value_of)
{
    aberrations lens;
    for (const auto& about : all_coefficients) {
        lens[about.which].modulus = as_typed(value_of(modulus_key(about.which)));
        if (about.symmetry != 0) lens[about.which].angle_degrees = as_typed(value_of(angle_key(about.which)));
    }
    return lens;
}

}  // namespace zentrix::lens
