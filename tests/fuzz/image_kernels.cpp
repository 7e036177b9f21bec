#include <cmath>
#include <memory>

#include "functions/rank/extreme_filter.h"
#include "functions/rank/median_filter.h"
#include "functions/rank/median_z.h"
#include "functions/rank/nth_element.h"
#include "functions/smoothing/box_pass.h"
#include "functions/smoothing/box_slice.h"
#include "functions/smoothing/gaussian.h"
#include "functions/statistics/survey.h"
#include "functions/transpose/transpose.h"
#include "tests/fuzz/kernel_checks.h"

namespace fuzz {

namespace {

using namespace qorv::functions;
using qorv::dm::image;

contents any_contents(input& from) { return static_cast<contents>(from.below(3)); }

/// A source with pixels.
template <class T>
std::unique_ptr<strided<T>> any_source(input& from, const extents& sizes)
{
    const layout how = any_layout(from);
    const contents what = any_contents(from);
    auto made = std::make_unique<strided<T>>(sizes, how);
    made->fill(from.random(), what);
    return made;
}

/// Runs a kernel from a source to a new destination and returns the pixels of that.
template <class T, class Run>
auto result_in(const extents& sizes, const layout& how, Run run)
{
    strided<T> destination{sizes, how};
    destination.fill(generator{}, contents::tied);
    run(destination.view());
    destination.check_gaps();
    return destination.pixels();
}

template <class T>
void copy_pixels(const image<const T>& from, const image<T>& to)
{
    for (std::ptrdiff_t z = 0; z < from.depth(); ++z)
        for (std::ptrdiff_t y = 0; y < from.height(); ++y)
            for (std::ptrdiff_t x = 0; x < from.width(); ++x) to(x, y, z) = from(x, y, z);
}

std::ptrdiff_t any_radius(input& from)
{
    constexpr std::ptrdiff_t edges[] = {0, 1, 2, 3, 5, 40, 200};
    return from.coin() ? from.pick(edges) : static_cast<std::ptrdiff_t>(from.below(24));
}

template <class T>
void check_extremes(input& from)
{
    extents sizes = small_sizes(from, 1);
    const auto source = any_source<T>(from, sizes);
    const layout how = any_layout(from);
    const auto which = from.coin() ? extreme::maximum : extreme::minimum;
    const std::ptrdiff_t radius = any_radius(from);
    compare_variants(
        "extreme filter", extreme_variants<T>(),
        [&](auto& kernel) {
            return result_in<T>(sizes, how, [&](const image<T>& to) { kernel(source->view(), which, radius, to); });
        },
        to_the_bit);
}

template <class T>
void check_median(input& from)
{
    extents sizes = small_sizes(from, 1);
    sizes[1] = std::min<std::ptrdiff_t>(sizes[1], (from.below(8) == 0 ? 12000 : 2000) / sizes[0]);
    const auto source = any_source<T>(from, sizes);
    const layout how = any_layout(from);
    const auto outside = from.coin() ? padding::zeros : padding::none;
    const std::ptrdiff_t drawn = any_radius(from), radius = drawn == 200 && sizes[0] * sizes[1] <= 500
                                                                ? 2147483647
                                                                : std::min<std::ptrdiff_t>(drawn, 12);
    compare_variants(
        "median filter", median_variants<T>(),
        [&](auto& kernel) {
            return result_in<T>(sizes, how, [&](const image<T>& to) { kernel(source->view(), radius, outside, to); });
        },
        to_the_bit);
}

template <class T>
void check_median_z(input& from)
{
    const extents sizes = small_sizes(from, 40);
    const auto source = any_source<T>(from, sizes);
    const layout how = any_layout(from);
    compare_variants(
        "median along z", median_z_variants<T>(),
        [&](auto& kernel) {
            return result_in<T>({sizes[0], sizes[1], 1}, how, [&](const image<T>& to) { kernel(source->view(), to); });
        },
        to_the_bit);
}

template <class T>
void check_rank(input& from)
{
    extents sizes = small_sizes(from);
    if (from.below(4) == 0) sizes = {5000, 2, 1};  // longer than the rows that are sampled as one
    const auto source = any_source<T>(from, sizes);
    const auto rank = static_cast<std::ptrdiff_t>(from.below(static_cast<std::size_t>(source->view().size())));
    const auto also = rank > 0 && from.coin() ? neighbour::before : neighbour::none;
    compare_variants(
        "n-th element", rank_variants<T>(),
        [&](auto& kernel) {
            const ranked<T> found = kernel(source->view(), rank, also);
            return std::vector<T>{found.at, found.before};
        },
        to_the_bit);
}

template <class T>
void check_gaussian(input& from)
{
    const extents sizes = small_sizes(from, 1);
    const auto source = any_source<T>(from, sizes);
    const layout how = any_layout(from);
    constexpr double sigmas[] = {0, 1e-30, 0.3, 1, 2.5, 9, 1e9, std::numeric_limits<double>::infinity()};
    const double sigma = from.pick(sigmas);
    const bool in_place = from.coin();
    const auto weights =
        gaussian_weights(sigma, static_cast<std::int32_t>(from.below(6)), std::max(sizes[0], sizes[1]));
    compare_variants(
        "gaussian", gaussian_variants<T>(),
        [&](auto& kernel) {
            return result_in<T>(sizes, how, [&](const image<T>& to) {
                if (in_place) copy_pixels<T>(source->view(), to);
                kernel(in_place ? image<const T>{to} : source->view(), to, weights);
            });
        },
        apart_from_payloads);
}

template <class T>
void check_box(input& from)
{
    const extents sizes = small_sizes(from, 6);
    const auto source = any_source<T>(from, sizes);
    const layout how = any_layout(from);
    const auto along = static_cast<axis>(from.below(3));
    const bool in_place = from.coin();
    const std::ptrdiff_t radius = any_radius(from);
    compare_variants(
        "box pass", box_pass_variants<T>(),
        [&](auto& kernel) {
            return result_in<T>(sizes, how, [&](const image<T>& to) {
                if (in_place) copy_pixels<T>(source->view(), to);
                kernel(in_place ? image<const T>{to} : source->view(), to, along, radius)();
            });
        },
        apart_from_payloads);
    const image<const T> plane = source->view().plane(0);
    const extents flat{sizes[0], sizes[1], 1};
    compare_variants(
        "box slice", box_slice_variants<T>(),
        [&](auto& kernel) { return result_in<T>(flat, how, [&](const image<T>& to) { kernel(plane, to, radius)(); }); },
        apart_from_payloads);
    compare_variants(
        "box, two slices", box_slice2_variants<T>(),
        [&](auto& kernel) {
            std::vector<T> squares;
            auto both = result_in<T>(flat, how, [&](const image<T>& mean) {
                squares = result_in<T>(flat, {}, [&](const image<T>& to) { kernel(plane, mean, to, radius); });
            });
            both.insert(both.end(), squares.begin(), squares.end());
            return both;
        },
        apart_from_payloads);
}

/// Vector forms add in lanes: among themselves they agree to the bit, with the plain form within the rounding of sums.
template <class T>
void check_survey(input& from)
{
    const auto source = any_source<T>(from, small_sizes(from));
    const auto rows = qorv::dm::runnable(survey_variants<T>());
    const auto numbers_of = [&](const auto& row) {
        const survey_record found = row.function(source->view());
        return std::array{found.minimum, found.maximum, found.sum, found.sum_of_squares, found.sum_of_absolutes};
    };
    bool any_finite = false;
    for (const T value : source->pixels()) any_finite |= std::isfinite(static_cast<double>(value));
    const auto plain = numbers_of(rows.back());
    for (std::size_t i = 0; i + 1 < rows.size(); ++i) {
        const auto found = numbers_of(rows[i]), first = numbers_of(rows[0]);
        for (std::size_t k = 0; k < found.size(); ++k) {
            const double bound = 1e-9 * plain[k == 2 ? 4 : 3] + 1e-9 * plain[4] + 1e-300;
            const bool same = found[k] == plain[k] || (found[k] != found[k] && plain[k] != plain[k]) ||
                              (k >= 2 && (std::abs(found[k] - plain[k]) <= bound || !std::isfinite(bound)));
            if (!same && (k >= 2 || any_finite)) fail("survey: " + std::string{rows[i].name} + " and plain differ");
            if (found[k] != first[k] && found[k] == found[k]) fail("survey: vector forms differ");
        }
    }
}

template <class T>
void check_transposed(input& from)
{
    extents sizes = small_sizes(from, 40);
    const auto which = from.coin() ? transposition::xz : transposition::yz;
    const bool in_place = from.below(4) == 0;
    if (in_place) sizes[2] = sizes[which == transposition::xz ? 0 : 1] = std::min<std::ptrdiff_t>(sizes[2], 70);
    const extents swapped =
        which == transposition::xz ? extents{sizes[2], sizes[1], sizes[0]} : extents{sizes[0], sizes[2], sizes[1]};
    const auto source = any_source<T>(from, sizes);
    const layout how = any_layout(from);
    compare_variants(
        "transpose", transpose_variants(),
        [&](auto& kernel) {
            return result_in<T>(swapped, how, [&](const image<T>& to) {
                if (in_place) copy_pixels<T>(source->view(), to);
                kernel(voxels_of(in_place ? image<const T>{to} : source->view()), voxels_of(to), sizeof(T), which);
            });
        },
        to_the_bit);
}

/// A pixel of a size that no vector form handles.
struct colour
{
    std::uint8_t channels[3];
};

void check_transposed_colours(input& from)
{
    const extents sizes{static_cast<std::ptrdiff_t>(1 + from.below(20)),
                        static_cast<std::ptrdiff_t>(1 + from.below(20)),
                        static_cast<std::ptrdiff_t>(1 + from.below(20))};
    std::vector<colour> source(static_cast<std::size_t>(sizes[0] * sizes[1] * sizes[2]));
    generator random = from.random();
    for (colour& one : source) one = {{std::uint8_t(random()), std::uint8_t(random()), std::uint8_t(random())}};
    const image<colour> view{source.data(), sizes[0], sizes[1], sizes[2]};
    compare_variants(
        "transpose", transpose_variants(),
        [&](auto& kernel) {
            std::vector<colour> result(source.size());
            kernel(voxels_of(view), voxels_of(image<colour>{result.data(), sizes[2], sizes[1], sizes[0]}),
                   sizeof(colour), transposition::xz);
            return result;
        },
        to_the_bit);
}

}  // namespace

std::vector<void (*)(input&)> image_kernel_checks()
{
    using complex = std::complex<float>;
    using complex_double = std::complex<double>;
    return {check_extremes<std::int8_t>,
            check_extremes<std::uint8_t>,
            check_extremes<std::int16_t>,
            check_extremes<std::uint16_t>,
            check_extremes<std::int32_t>,
            check_extremes<std::uint32_t>,
            check_extremes<float>,
            check_extremes<double>,
            check_median<float>,
            check_median<double>,
            check_median_z<float>,
            check_median_z<double>,
            check_rank<float>,
            check_rank<double>,
            check_gaussian<float>,
            check_gaussian<double>,
            check_box<float>,
            check_box<double>,
            check_box<complex>,
            check_box<complex_double>,
            check_survey<std::int8_t>,
            check_survey<std::uint16_t>,
            check_survey<std::int32_t>,
            check_survey<float>,
            check_survey<double>,
            check_transposed<std::uint8_t>,
            check_transposed<std::uint16_t>,
            check_transposed<float>,
            check_transposed<complex>,
            check_transposed<complex_double>,
            check_transposed_colours};
}

}  // namespace fuzz
