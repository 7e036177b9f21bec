#include "image/processor.h"

#include <cpuid.h>
#include <immintrin.h>

namespace qorv::dm {

processor_registers processor = {};

namespace {

constexpr std::uint32_t osxsave = 1u << 27;  // in the third word: the instruction XGETBV exists

[[gnu::target("xsave")]] std::uint32_t preserved_state() noexcept { return static_cast<std::uint32_t>(_xgetbv(0)); }

}  // namespace

void read_processor_features() noexcept
{
    processor = {};
    auto& [a, b, c, d] = processor.words;
    if (!__get_cpuid(1, &a, &b, &c, &d)) return;
    if ((c & osxsave) != 0) processor.preserved = preserved_state();
    unsigned a7 = 0, c7 = 0, d7 = 0;
    __get_cpuid_count(7, 0, &a7, &processor.extended, &c7, &d7);  // leaves zeros where there is no leaf 7
}

void set_use_simd(std::int32_t use) noexcept
{
    if (use != 0)
        read_processor_features();
    else
        processor.words[2] = processor.words[3] = 0;
}

}  // namespace qorv::dm
