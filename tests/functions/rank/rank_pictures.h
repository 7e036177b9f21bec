#pragma once

#include "image/image.h"
#include "image/processor.h"
#include "tests/support/same_bytes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

/// Pictures that are hard to rank, and the variants of a kernel compared on them.
namespace rank_pictures {

using qorv::dm::image;
using real_types = testing::Types<float, double>;

enum class content
{
    noise,       ///< hardly two alike, both signs
    few_levels,  ///< ties everywhere; the sum of two real numbers may overflow
    ramp,        ///< sorted
    infinities,  ///< noise with a third of infinities of both signs
    halves,      ///< the lowest value or -inf, then the highest or +inf
    nans,        ///< noise with a few NaN of different payloads
};
using contents = std::vector<content>;
inline const contents ordered_contents{content::noise, content::few_levels, content::ramp, content::infinities,
                                       content::halves};
inline const contents all_contents{content::noise,      content::few_levels, content::ramp,
                                   content::infinities, content::halves,     content::nans};

/// Integers have the ends of their range for infinities, and zeros for NaN.
template <class T>
std::vector<T> picture(content what, std::ptrdiff_t count, unsigned seed = 1)
{
    using limits = std::numeric_limits<T>;
    const T lowest = limits::has_infinity ? -limits::infinity() : limits::lowest();
    const T highest = limits::has_infinity ? limits::infinity() : limits::max();
    std::mt19937 random{seed};
    std::vector<T> pixels(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const unsigned r = random();
        T& p = pixels[i];
        p = limits::is_integer ? static_cast<T>(r)
                               : static_cast<T>(std::ldexp(double(r) - 2147483648.0, int(r % 9) - 40));
        if (what == content::few_levels) p = static_cast<T>((1 + r % 3) * (limits::is_integer ? 1 : limits::max() / 3));
        if (what == content::ramp) p = static_cast<T>(i);
        const unsigned rare = random();
        if (what == content::infinities && rare % 3 == 0) p = rare % 2 == 0 ? lowest : highest;
        if (what == content::halves) p = i < pixels.size() / 2 ? lowest : highest;
        if (what == content::nans && rare % 23 == 0)
            p = limits::has_quiet_NaN ? (rare % 2 == 0 ? limits::quiet_NaN() : -limits::quiet_NaN()) : T(0);
    }
    return pixels;
}

/// Width and height.
using extent = std::array<std::ptrdiff_t, 2>;
inline const std::vector<extent> small_planes{{1, 1}, {2, 3}, {7, 1}, {1, 9}, {13, 11}, {37, 29}};

/// Asserts check(plane, radius, mode) for all combinations.
template <class T, class Mode, class Check>
void for_each_plane(const std::vector<extent>& sizes, const std::vector<std::ptrdiff_t>& radii, const contents& whats,
                    std::initializer_list<Mode> modes, Check check)
{
    for (const auto [width, height] : sizes)
        for (const std::ptrdiff_t radius : radii)
            for (const content what : whats)
                for (const Mode mode : modes) {
                    const auto pixels = picture<T>(what, width * height, unsigned(radius));
                    ASSERT_TRUE(check(image<const T>{pixels.data(), width, height}, radius, mode)) << int(what);
                }
}

template <class T, class Truth>
std::vector<T> at_every_pixel(const image<const T>& plane, Truth truth)
{
    std::vector<T> all;
    for (std::ptrdiff_t y = 0; y < plane.height(); ++y)
        for (std::ptrdiff_t x = 0; x < plane.width(); ++x) all.push_back(truth(x, y));
    return all;
}

template <class T>
T median_by_sorting(std::vector<T> values)
{
    std::sort(values.begin(), values.end());
    const T middle = values[values.size() / 2];
    return values.size() % 2 != 0 ? middle : (middle + values[values.size() / 2 - 1]) * T(0.5);
}

/// The rows of a kernel's table that this machine runs.
template <class Table>
auto variants(const Table& table)
{
    qorv::dm::read_processor_features();
    return qorv::dm::runnable(table);
}

/// The output of a kernel, written into guarded memory. `options` are the parameters between source and destination.
template <class T, class Kernel, class... Options>
std::vector<T> run(Kernel* kernel, const image<const T>& source, Options... options)
{
    support::framed<T> out{static_cast<std::size_t>(source.width() * source.height())};
    kernel(source, options..., {out.inside(), source.width(), source.height()});
    EXPECT_TRUE(out.frame_untouched());
    return out.copy();
}

/// The last row of a table is the plain form.
template <class T, class Table, class... Options>
std::vector<T> run_plain(const Table& table, const image<const T>& source, Options... options)
{
    return run(table.back().function, source, options...);
}

template <class T, class Kernel, class... Options>
testing::AssertionResult every_variant_gives(const std::vector<T>& expected, qorv::dm::variants<Kernel> table,
                                             const image<const T>& source, Options... options)
{
    for (const auto& v : variants(table))
        if (auto same = support::same_bytes(run(v.function, source, options...), expected); !same)
            return ((same << " by " << v.name << ", " << source.width() << " x " << source.height())
                    << ... << (" " + std::to_string(static_cast<std::int64_t>(options))));
    return testing::AssertionSuccess();
}

}  // namespace rank_pictures
