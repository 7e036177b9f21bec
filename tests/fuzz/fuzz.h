#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// A harness is a source that defines `LLVMFuzzerTestOneInput` and `fuzz::seeds`. In the preset `fuzz` it is linked
/// with libFuzzer, in the others with driver.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// Inputs to start from, and inputs that have found a fault before.
std::vector<std::string> seeds();

/// Ends the process, as a sanitizer does.
[[noreturn]] inline void fail(const std::string& what)
{
    std::fprintf(stderr, "fuzz: %s\n", what.c_str());
    std::abort();
}

/// Random bits, cheap to seed and the same everywhere: the upper halves of splitmix64.
/// Source  S. Vigna, https://prng.di.unimi.it/splitmix64.c, in the public domain
class generator
{
  public:
    explicit generator(std::uint32_t seed = 1) : state_{seed} {}
    std::uint32_t operator()()
    {
        std::uint64_t z = state_ += 0x9e3779b97f4a7c15;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return static_cast<std::uint32_t>((z ^ (z >> 31)) >> 32);
    }

  private:
    std::uint64_t state_;
};

/// Decodes the bytes of an input; after its end all are zero.
class input
{
  public:
    input(const std::uint8_t* data, std::size_t size) : at_{data}, end_{data + size} {}

    template <class T>
    T number()
    {
        static_assert(std::is_arithmetic_v<T>);
        std::array<unsigned char, sizeof(T)> bytes{};
        for (unsigned char& byte : bytes) byte = at_ < end_ ? *at_++ : 0;
        T value;
        std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }
    /// 0 .. limit - 1.
    std::size_t below(std::size_t limit)
    {
        return limit <= 256 ? number<std::uint8_t>() % limit : number<std::uint32_t>() % limit;
    }
    bool coin() { return below(2) != 0; }
    template <class List>
    const auto& pick(const List& list)
    {
        return list[below(std::size(list))];
    }
    std::string text(std::size_t length)
    {
        const std::size_t count = std::min(length, left());
        const std::string result{reinterpret_cast<const char*>(at_), count};
        at_ += count;
        return result;
    }
    std::string rest() { return text(left()); }
    std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }
    /// A generator that the next four bytes seed, for pixels.
    fuzz::generator random() { return fuzz::generator{number<std::uint32_t>()}; }

  private:
    const std::uint8_t *at_, *end_;
};

/// A number of the kinds that break arithmetic: zeros of both signs, infinities, NaN, subnormal, huge and tiny ones,
/// the limits of integers, and ordinary ones.
template <class T>
T awkward(generator& random)
{
    using limits = std::numeric_limits<T>;
    if constexpr (std::is_integral_v<T>) {
        const T values[] = {0, 1, 2, 3, limits::max(), limits::min(), static_cast<T>(limits::max() - 1)};
        return random() % 2 ? values[random() % std::size(values)] : static_cast<T>(random());
    } else {
        const T values[] = {T{0},
                            -T{0},
                            T{1},
                            T{-1},
                            limits::max(),
                            limits::lowest(),
                            limits::min(),
                            T{1e-30},
                            T{1e19},
                            T{2.5},
                            T{1e-6},
                            T{3.14159265358979},
                            limits::infinity(),
                            -limits::infinity(),
                            limits::quiet_NaN(),
                            limits::denorm_min()};
        if (random() % 2) return values[random() % std::size(values)];
        return static_cast<T>(static_cast<double>(random()) / 65536 - 32768) / 1000;
    }
}

/// How pixels are filled.
enum class contents
{
    ordinary,  ///< noise of different magnitude
    tied,      ///< few different values, zeros of both signs
    awkward    ///< see above
};

template <class T>
T pixel(generator& random, contents what)
{
    if constexpr (std::is_arithmetic_v<T>) {
        if (what == contents::awkward) return awkward<T>(random);
        if (what == contents::tied) {
            const T level = static_cast<T>(random() % 4);
            return std::is_floating_point_v<T> && random() % 2 ? static_cast<T>(-level) : level;
        }
    }
    if constexpr (std::is_integral_v<T>) return static_cast<T>(random());
    return static_cast<T>((static_cast<double>(random()) / 4294967296.0 - 0.4) * 1000);
}

}  // namespace fuzz
