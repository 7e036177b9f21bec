#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// xsimd's tags of instruction sets. They select the vector form of a kernel in a table of variants. Only the files
/// that define and instantiate such a form include xsimd.
namespace xsimd {
struct sse2;
struct avx2;
}  // namespace xsimd

/// The instruction sets that kernels may use, and the table in which a kernel lists its variants.
namespace qorv::dm {

/// What a variant of a kernel needs; none = runs on every processor.
enum class cpu
{
    none,
    sse,
    sse2,
    avx2,
};

/// What the processor and the operating system say about instruction sets. All zero offers cpu::none only.
struct processor_registers
{
    std::uint32_t words[4];   ///< EAX, EBX, ECX, EDX of CPUID leaf 1
    std::uint32_t extended;   ///< EBX of CPUID leaf 7; zero where the processor has no such leaf
    std::uint32_t preserved;  ///< register state that the system preserves between threads, XCR0; zero without OSXSAVE
};

/// True if kernels that need `needed` can run. SSE and SSE2 are bits 25 and 26 of the fourth word. AVX2 takes the
/// processor's word for it (leaf 7) and that the operating system preserves the registers (leaf 1, XCR0): without the
/// latter, its instructions fault. Nothing but cpu::none is offered while the third and fourth words are zero.
constexpr bool offers(const processor_registers& processor, cpu needed) noexcept
{
    constexpr std::uint32_t sse = 1u << 25, sse2 = 1u << 26;        // fourth word
    constexpr std::uint32_t osxsave_and_avx = 1u << 27 | 1u << 28;  // third word
    constexpr std::uint32_t avx2 = 1u << 5;                         // leaf 7
    constexpr std::uint32_t xmm_and_ymm = 1u << 1 | 1u << 2;        // XCR0
    const auto all_of = [](std::uint32_t bits, std::uint32_t word) { return (word & bits) == bits; };
    switch (needed) {
        case cpu::none: return true;
        case cpu::sse: return all_of(sse, processor.words[3]);
        case cpu::sse2: return all_of(sse2, processor.words[3]);
        case cpu::avx2:
            return all_of(osxsave_and_avx, processor.words[2]) && all_of(xmm_and_ymm, processor.preserved) &&
                   all_of(avx2, processor.extended);
    }
    return false;
}

/// The registers as last read; zero before the first read_processor_features(). Written on the host's main thread
/// only, read without a lock.
extern processor_registers processor;

/// Reads all registers.
void read_processor_features() noexcept;

/// The script function SetUseSIMD: 0 clears the third and fourth words, so that has() is false and the plain kernels
/// run; any other value reads all registers again.
void set_use_simd(std::int32_t use) noexcept;

inline bool has(cpu needed) noexcept { return offers(processor, needed); }

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
