#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// xsimd's tags of instruction sets. They select the vector form of a kernel in a table of variants. Only the files
/// that define and instantiate such a form include xsimd.
namespace xsimd {
struct sse2;
}

/// The instruction sets that kernels may use, and the table in which a kernel lists its variants.
namespace qorv::dm {

/// Feature bits in the fourth word (EDX) of CPUID leaf 1; none = runs on every processor.
enum class cpu : std::uint32_t
{
    none = 0,
    sse = 1u << 25,
    sse2 = 1u << 26,
};

/// The registers EAX, EBX, ECX, EDX of CPUID leaf 1 as last read; zero before the first read_processor_features().
/// Written on the host's main thread only, read without a lock.
extern std::uint32_t processor_words[4];

/// Reads CPUID leaf 1 into all four words.
void read_processor_features() noexcept;

/// The script function SetUseSIMD: 0 clears the third and fourth words, so that has() is false and the plain kernels
/// run; any other value reads all four words again.
void set_use_simd(std::int32_t use) noexcept;

inline bool has(cpu needed) noexcept
{
    const auto bits = static_cast<std::uint32_t>(needed);
    return (processor_words[3] & bits) == bits;
}

/// One row of a kernel's table of variants. The best variant is first; the last one needs no feature.
template <class Function>
struct variant
{
    const char* name;
    cpu needs;
    Function* function;
};

/// A table defined in the source file of the kernel's plain form.
template <class Function>
using variants = std::span<const variant<Function>>;

/// The first row that the present features allow. Called once per script call, so that SetUseSIMD takes effect at once.
template <class Function>
const variant<Function>& choose(variants<Function> table) noexcept
{
    for (const auto& row : table)
        if (has(row.needs)) return row;
    return table.back();
}

/// All rows that the present features allow, for tests and benchmarks.
template <class Function>
std::vector<variant<Function>> runnable(variants<Function> table)
{
    std::vector<variant<Function>> rows;
    for (const auto& row : table)
        if (has(row.needs)) rows.push_back(row);
    return rows;
}

}  // namespace qorv::dm
