#include "lens/contrast_profile.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lens/transfer_value.h"

namespace zentrix::lens {

namespace {

constexpr int directions = 72;

bool is_round(const transfer_arguments& a)
{
    const std::complex<double> others[] = {a.c22, a.c31, a.c33, a.c42, a.c44, a.c51,
                                           a.c53, a.c55, a.c62, a.c64, a.c66, a.tilt};
    return std::ranges::all_of(others, [](auto term) { return term == 0.0; });
}

}  // namespace

double contrast_transfer(const transfer_arguments& arguments, std::complex<double> frequency)
{
    return -transfer_value(arguments, frequency).imag();
}

double largest_phase_step(const transfer_arguments& arguments, std::complex<double> frequency, double distance)
{
    const double here = aberration_function(arguments, frequency);
    return std::max(std::abs(aberration_function(arguments, frequency + distance) - here),
                    std::abs(aberration_function(arguments, frequency + std::complex{0.0, distance}) - here));
}

contrast_profile profile_of(const transfer_arguments& arguments, double limit, std::size_t count, double distance)
{
    const int turns = is_round(arguments) ? 1 : directions;
    contrast_profile profile;
    profile.step = limit / static_cast<double>(count - 1);
    for (std::size_t i = 0; i < count; ++i) {
        const double radius = static_cast<double>(i) * profile.step;
        double contrast = 0, envelope = 0, largest = 0;
        for (int k = 0; k < turns; ++k) {
            const auto frequency = std::polar(radius, 2 * std::numbers::pi * k / turns);
            const auto value = transfer_value(arguments, frequency);
            contrast -= value.imag();
            envelope += std::abs(value);
            largest = std::max(largest, largest_phase_step(arguments, frequency, distance));
        }
        profile.contrast.push_back(contrast / turns);
        profile.envelope.push_back(envelope / turns);
        if (largest > std::numbers::pi && profile.undersampled_from == 0) profile.undersampled_from = radius;
        if (i == 0) continue;
        // The place between two elements where a straight line through both has this value.
        const auto crossing = [&](double before, double after, double value) {
            return radius - profile.step * (after - value) / (after - before);
        };
        const double before = profile.contrast[i - 1], after = profile.contrast[i];
        const double end = std::exp(-2.0);
        if (profile.information_limit == 0 && profile.envelope[i] < end && profile.envelope[i - 1] >= end)
            profile.information_limit = crossing(profile.envelope[i - 1], profile.envelope[i], end);
        if (before * after < 0 && profile.undersampled_from == 0 && profile.information_limit == 0)
            profile.zeros.push_back(crossing(before, after, 0));
    }
    return profile;
}

}  // namespace zentrix::lens
