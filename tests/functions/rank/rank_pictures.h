#pragma once

#include "image/image.h"
#include "image/processor.h"
#include "tests/support/canvas.h"
#include "tests/support/same_bytes.h"

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

/// The last row of a kernel's table.
template <class Function, std::size_t n>
Function* plain_of(const qorv::dm::variant<Function> (&table)[n])
{
    return table[n - 1].function;
}

/// Width and height.
using extent = std::array<std::ptrdiff_t, 2>;
inline constexpr extent small_planes[] = {{1, 1}, {2, 3}, {7, 1}, {1, 9}, {13, 11}, {37, 29}};

/// Widths and heights that meet every remainder of a vector, a stretch and a window at least once.
inline std::vector<extent> planes()
{
    std::vector<extent> all{{67, 1}, {1, 67}, {2, 2}, {3, 3}, {5, 4}};
    for (std::ptrdiff_t n = 1; n <= 67; n += n < 19 || n > 60 ? 1 : 5) all.push_back({n, 1 + (n * 29) % 67});
    return all;
}

template <class T, class Truth>
std::vector<T> at_every_pixel(const qorv::dm::image<const T>& plane, Truth truth)
{
    std::vector<T> all;
    for (std::ptrdiff_t y = 0; y < plane.height(); ++y)
        for (std::ptrdiff_t x = 0; x < plane.width(); ++x) all.push_back(truth(plane, x, y));
    return all;
}

/// What a kernel writes into guarded memory; `how` stands between its source and its destination.
template <class T, class Kernel, class... How>
std::vector<T> run(Kernel* kernel, const qorv::dm::image<const T>& plane, How... how)
{
    support::framed<T> out{static_cast<std::size_t>(plane.width() * plane.height())};
    kernel(plane, how..., {out.inside(), plane.width(), plane.height()});
    EXPECT_TRUE(out.frame_untouched());
    return out.copy();
}

template <class T, class Kernel, std::size_t n, class... How>
testing::AssertionResult every_variant_gives(const std::vector<T>& wanted, const qorv::dm::variant<Kernel> (&table)[n],
                                             const qorv::dm::image<const T>& plane, How... how)
{
    for (const auto& v : variants(table))
        if (auto same = support::same_bytes(run(v.function, plane, how...), wanted); !same)
            return ((same << " by " << v.name << ", " << plane.width() << " x " << plane.height())
                    << ... << (" " + std::to_string(static_cast<std::int64_t>(how))));
    return testing::AssertionSuccess();
}

/// `filter` works plane by plane through any strides, writes nothing between them, and gives `truth` at every pixel.
template <class T, class Filter, class Truth>
void expect_filters_strided_volumes(Filter filter, Truth truth)
{
    const auto pixels = picture<T>(content::noise, 40 * 30 * 3);
    using extents = typename qorv::dm::image<T>::extents;
    for (const extents& strides : {extents{1, 40, 1200}, {2, 40, 1200}, {40, 1, 1200}, {1, 120, 40}})
        for (std::int32_t use : {0, 1}) {
            qorv::dm::set_use_simd(use);
            const qorv::dm::image<const T> source{pixels.data(), {17, 13, 3}, strides};
            std::vector<T> out(pixels.size(), T(7));
            const qorv::dm::image<T> destination{out.data(), {17, 13, 3}, strides};
            filter(source, destination);
            support::for_each_place(source.sizes(), [&](auto x, auto y, auto z) {
                EXPECT_EQ(destination(x, y, z), truth(source.plane(z), x, y));
                destination(x, y, z) = T(7);
            });
            ASSERT_EQ(out, std::vector<T>(pixels.size(), T(7))) << "written between the strides";
        }
}

}  // namespace rank_pictures
