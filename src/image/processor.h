#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Which instruction sets the kernels may use, and the table form in which a kernel lists its variants.
namespace qorv::dm {

/// Feature bits of the fourth word (EDX) of CPUID leaf 1; none = runs everywhere.
enum class cpu : std::uint32_t
{
    none = 0,
    sse = 1u << 25,
    sse2 = 1u << 26,
};

/// The four registers EAX, EBX, ECX, EDX of CPUID leaf 1 as last read. Zero until `read_processor_features` ran.
/// Written on the host's main thread only, read without a lock.
extern std::uint32_t processor_words[4];

/// Reads CPUID leaf 1 into all four words.
void read_processor_features() noexcept;

/// The script switch: 0 clears the third and fourth words, so that every later test fails and the plain kernels run;
/// anything else reads all four words again.
void set_use_simd(std::int32_t use) noexcept;

inline bool has(cpu needed) noexcept
{
    const auto bits = static_cast<std::uint32_t>(needed);
    return (processor_words[3] & bits) == bits;
}

/// One row of a kernel's table: best first, the last one needs nothing.
template <class Function>
struct variant
{
    const char* name;
    cpu needs;
    Function* function;
};

/// The first row that the present features allow; asked once per call, so that the script switch acts at once.
template <class Function, std::size_t n>
const variant<Function>& choose(const variant<Function> (&table)[n]) noexcept
{
    for (const auto& row : table)
        if (has(row.needs)) return row;
    return table[n - 1];
}

/// All rows that the present features allow, for tests and benchmarks.
template <class Function, std::size_t n>
std::vector<variant<Function>> runnable(const variant<Function> (&table)[n])
{
    std::vector<variant<Function>> rows;
    for (const auto& row : table)
        if (has(row.needs)) rows.push_back(row);
    return rows;
}

}  // namespace qorv::dm
