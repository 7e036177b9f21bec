#include <cmath>
#include <memory>
#include <optional>

#include "functions/elementwise/modulus.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "optics/shifter.h"
#include "optics/unwrap/goldstein.h"
#include "optics/wave_transfer.h"
#include "tests/fuzz/kernel_checks.h"

namespace fuzz {

namespace {

using namespace qorv::functions;
using namespace qorv::optics;
using complex = std::complex<float>;

/// `count` elements with guards on both sides, at any alignment.
template <class T>
class guarded
{
  public:
    guarded(std::size_t count, std::size_t offset)
        : memory_{{static_cast<std::ptrdiff_t>(count + offset), 1, 1}, {}}, offset_{offset}
    {}
    T* data() const { return memory_.view().data() + offset_; }
    std::vector<T> copy() const
    {
        memory_.check_gaps();
        const std::vector<T> all = memory_.pixels();
        return {all.begin() + static_cast<std::ptrdiff_t>(offset_), all.end()};
    }
    void fill(generator random, contents what) { memory_.fill(random, what); }

  private:
    strided<T> memory_;
    std::size_t offset_;
};

/// What flat kernels have in common: a number of elements, an offset from the alignment of vectors, sources.
struct sequence
{
    explicit sequence(input& from)
        : count{from.coin() ? from.below(300) : from.below(70)},
          offset{from.below(8)},
          what{static_cast<contents>(from.below(3))},
          random{from.random()}
    {}
    template <class T>
    std::unique_ptr<guarded<T>> source()
    {
        auto made = std::make_unique<guarded<T>>(count, offset);
        made->fill(generator{random()}, what);
        return made;
    }
    std::size_t count, offset;
    contents what;
    generator random;
    std::ptrdiff_t length() const { return static_cast<std::ptrdiff_t>(count); }
};

template <class T>
void check_polar(input& from)
{
    sequence all{from};
    const auto rho = all.source<T>(), theta = all.source<T>();
    const std::ptrdiff_t step = from.coin() && all.count > 0;
    compare_variants(
        "polar", polar_variants<T>(),
        [&](auto& kernel) {
            guarded<std::complex<T>> result{all.count, all.offset};
            kernel(rho->data(), step, theta->data(), result.data(), all.length());
            return result.copy();
        },
        apart_from_payloads);
}

template <class T, auto table>
void check_one_source(input& from)
{
    sequence all{from};
    const auto source = all.source<T>();
    const bool in_place = from.coin();
    compare_variants(
        "power or logarithm", table(),
        [&](auto& kernel) {
            guarded<T> result{all.count, all.offset};
            std::copy_n(source->data(), all.count, result.data());
            kernel(in_place ? result.data() : source->data(), result.data(), all.length());
            return result.copy();
        },
        apart_from_payloads);
}

template <class T>
void check_pow(input& from)
{
    sequence all{from};
    const auto a = all.source<T>(), b = all.source<T>();
    const bool in_place = from.coin();
    compare_variants(
        "power", pow_variants<T>(),
        [&](auto& kernel) {
            guarded<T> result{all.count, all.offset};
            std::copy_n(b->data(), all.count, result.data());
            kernel(a->data(), in_place ? result.data() : b->data(), result.data(), all.length());
            return result.copy();
        },
        apart_from_payloads);
}

template <class T>
void check_modulus_and_phase(input& from)
{
    sequence all{from};
    const auto source = all.source<std::complex<T>>();
    compare_variants(
        "modulus and phase", modulus_and_phase_variants<T>(),
        [&](auto& kernel) {
            guarded<T> modulus{all.count, all.offset}, phase{all.count, all.offset};
            kernel(source->data(), modulus.data(), phase.data(), all.length());
            auto both = modulus.copy();
            const auto second = phase.copy();
            both.insert(both.end(), second.begin(), second.end());
            return both;
        },
        apart_from_payloads);
}

/// Vector forms do not scale: the same bits among themselves, and the plain form's value where no square leaves the
/// range of the type.
template <class T>
void check_modulus(input& from)
{
    sequence all{from};
    const auto source = all.source<std::complex<T>>();
    const auto rows = qorv::dm::runnable(modulus_variants<T>());
    std::vector<std::vector<T>> results;
    for (const auto& row : rows) {
        guarded<T> result{all.count, all.offset};
        row.function(source->data(), result.data(), all.length());
        results.push_back(support::one_nan(result.copy()));
    }
    const T low = std::sqrt(std::numeric_limits<T>::min()) * T{1e4},
            high = std::sqrt(std::numeric_limits<T>::max()) / 2;
    for (std::size_t row = 0; row + 1 < rows.size(); ++row) {
        if (!same_bits(results[row], results[0])) fail("modulus: vector forms differ");
        for (std::size_t i = 0; i < all.count; ++i) {
            const T plain = results.back()[i];
            if (plain > low && plain < high &&
                std::abs(results[row][i] - plain) > 3 * std::numeric_limits<T>::epsilon() * plain)
                fail("modulus: a vector form is wrong");
        }
    }
}

void check_wave_transfer(input& from)
{
    int width = static_cast<int>(from.below(70)) - 1;                          // images without pixels do nothing
    if (from.below(8) == 0) width += 200 + static_cast<int>(from.below(350));  // more than a block
    const int height = static_cast<int>(1 + from.below(20));
    const bool in_place = from.coin();
    const auto what = static_cast<contents>(from.below(3));
    const auto lens_contents = from.coin() ? contents::awkward : contents::ordinary;
    generator random = from.random();
    const auto count = static_cast<std::size_t>(std::max(width, 0) * height);
    guarded<complex> source{count, 0};
    source.fill(random, what);
    const auto number = [&] { return pixel<float>(random, lens_contents) / 100; };
    const auto pair = [&] { return complex{number(), number()}; };
    const sampling at{width, height, from.coin() ? 0.00197f : number(), from.coin() ? 0.05f : number(), pair() / 1e3f};
    aberrations lens;
    for (float* round : {&lens.c20, &lens.c40, &lens.c60}) *round = from.coin() ? number() : 0;
    for (complex* one : {&lens.c22, &lens.c31, &lens.c33, &lens.c42, &lens.c44, &lens.c51, &lens.c53, &lens.c55,
                         &lens.c62, &lens.c64, &lens.c66})
        *one = from.coin() ? pair() : complex{};
    std::optional<envelope> damping;
    if (from.coin()) damping = envelope{number(), number(), number()};
    compare_variants(
        "wave transfer", wave_transfer_variants(),
        [&](auto& kernel) {
            guarded<complex> result{count, 0};
            std::copy_n(source.data(), count, result.data());
            kernel(in_place ? result.data() : source.data(), result.data(), at, lens, damping);
            return result.copy();
        },
        apart_from_payloads);
}

void check_shifter(input& from)
{
    std::size_t width = 1 + from.below(70), height = 1 + from.below(20);
    if (from.below(16) == 0) width += from.coin() ? 400 : 4080, height += 90;  // shared by threads, lines in sections
    const auto room = static_cast<std::ptrdiff_t>(from.below(width * height + 1));
    guarded<complex> source{width * height, from.below(2)};
    source.fill(from.random(), contents::awkward);
    compare_variants(
        "shifter", shifter_variants(),
        [&](auto& kernel) {
            guarded<complex> result{width * height, 0};
            result.fill(generator{}, contents::tied);
            kernel(source.data(), result.data(), static_cast<std::ptrdiff_t>(width),
                   static_cast<std::ptrdiff_t>(height), room);
            return result.copy();
        },
        to_the_bit);
}

void check_goldstein(input& from)
{
    const auto width = static_cast<std::int32_t>((from.below(8) == 0 ? 100 : 1) + from.below(70)),
               height = static_cast<std::int32_t>(1 + from.below(40));
    const auto limit = static_cast<std::int32_t>(from.below(40));
    const auto what = static_cast<contents>(from.below(3));
    constexpr float spreads[] = {0, 0.002f, 0.003f, 0.004f, 1};  // from no residue to one at a third of the pixels
    const float spread = from.pick(spreads);
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    guarded<float> phase{count, 0};
    phase.fill(from.random(), what);
    if (what == contents::ordinary && from.coin())  // in the range of phases
        for (std::size_t i = 0; i < count; ++i)
            phase.data()[i] = std::remainder(phase.data()[i] * spread + 0.01f * static_cast<float>(i), 6.2831853f);
    if (what == contents::tied)  // differences of exactly pi, zeros of both signs
        for (std::size_t i = 0; i < count; ++i)
            phase.data()[i] = (phase.data()[i] - 2) * (spread > 0 ? 1.5707963f : -0.f);
    compare_variants(
        "unwrapping", goldstein_variants(),
        [&](auto& kernel) {
            guarded<float> result{count, 0};
            guarded<std::uint32_t> scratch{count, 0};
            kernel(phase.data(), result.data(), width, height, limit, scratch.data());
            scratch.copy();
            return result.copy();
        },
        apart_from_payloads);
}

}  // namespace

std::vector<void (*)(input&)> flat_kernel_checks()
{
    return {check_polar<float>,
            check_polar<double>,
            check_one_source<float, exp2_variants<float>>,
            check_one_source<float, log2_variants<float>>,
            check_pow<float>,
            check_modulus<float>,
            check_modulus<double>,
            check_modulus_and_phase<float>,
            check_wave_transfer,
            check_wave_transfer,
            check_shifter,
            check_goldstein,
            check_goldstein};
}

}  // namespace fuzz
