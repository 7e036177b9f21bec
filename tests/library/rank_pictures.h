#pragma once

#include "image/image.h"
#include "image/processor.h"
#include "support/same_bytes.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

/// Pictures that are hard to rank, and the types and variants to rank them in.
namespace rank_pictures {

enum class content
{
    noise,       ///< hardly two alike, both signs
    few_levels,  ///< ties everywhere
    ramp,        ///< sorted
    infinities,  ///< noise with a third of infinities of both signs
    halves,      ///< the lowest value or -inf, then the highest or +inf
    zeros,       ///< noise with zeros of both signs, scattered in one quarter of the picture
    nans,        ///< noise with a few NaN of different payloads
};

inline std::vector<content> contents_without_special()
{
    return {content::noise, content::few_levels, content::ramp, content::infinities, content::halves};
}
inline std::vector<content> all_contents()
{
    auto all = contents_without_special();
    all.insert(all.end(), {content::zeros, content::nans});
    return all;
}

/// Integers know no infinity and no NaN; they get the ends of their range and zeros instead.
template <class T>
std::vector<T> picture(content what, std::ptrdiff_t count, unsigned seed = 1)
{
    using limits = std::numeric_limits<T>;
    constexpr T lowest = limits::has_infinity ? -limits::infinity() : limits::lowest();
    constexpr T highest = limits::has_infinity ? limits::infinity() : limits::max();
    std::mt19937 random{seed};
    std::vector<T> pixels(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const unsigned r = random();
        T& p = pixels[i];
        p = limits::is_integer ? static_cast<T>(r)
                               : static_cast<T>(std::ldexp(double(r) - 2147483648.0, int(r % 9) - 40));
        if (what == content::few_levels) p = static_cast<T>(1 + r % 3);
        if (what == content::ramp) p = static_cast<T>(i);
        const unsigned rare = random();
        if (what == content::infinities && rare % 3 == 0) p = rare % 2 == 0 ? lowest : highest;
        if (what == content::halves) p = i < pixels.size() / 2 ? lowest : highest;
        if (what == content::zeros && i < pixels.size() / 4 && rare % 3 == 0)
            p = rare % 2 == 0 ? T(0) : static_cast<T>(-T(0));
        if (what == content::nans && rare % 23 == 0)
            p = limits::has_quiet_NaN ? (rare % 2 == 0 ? limits::quiet_NaN() : -limits::quiet_NaN()) : T(0);
    }
    return pixels;
}

/// The rows of a kernel's table that this machine runs; the last is the plain one.
template <class Function, std::size_t n>
auto variants(const qorv::dm::variant<Function> (&table)[n])
{
    qorv::dm::read_processor_features();
    return qorv::dm::runnable(table);
}

/// Widths and heights that meet every remainder of a vector, a stretch and a window at least once.
inline std::vector<std::array<std::ptrdiff_t, 2>> planes()
{
    std::vector<std::array<std::ptrdiff_t, 2>> all;
    for (std::ptrdiff_t n = 1; n <= 67; n += n < 19 || n > 60 ? 1 : 5) all.push_back({n, 1 + (n * 29) % 67});
    for (std::array<std::ptrdiff_t, 2> more : {std::array<std::ptrdiff_t, 2>{67, 1}, {1, 67}, {2, 2}, {3, 3}, {5, 4}})
        all.push_back(more);
    return all;
}

inline std::string where(std::ptrdiff_t width, std::ptrdiff_t height, std::ptrdiff_t radius, content what)
{
    return std::to_string(width) + " x " + std::to_string(height) + ", radius " + std::to_string(radius) +
           ", content " + std::to_string(int(what));
}

}  // namespace rank_pictures
