#include "image/processor.h"

#include <gtest/gtest.h>

namespace {

using namespace qorv::dm;

constexpr std::uint32_t sse = 1u << 25, sse2 = 1u << 26, osxsave = 1u << 27, avx = 1u << 28, fma = 1u << 12;
constexpr std::uint32_t xmm = 2, ymm = 4, avx2 = 1u << 5;

/// Simulated processors and systems, and the instruction sets that kernels may use there.
TEST(Processor, OffersWhatProcessorAndSystemSupportTogether)
{
    const struct
    {
        const char* what;
        processor_registers registers;
        bool sse, sse2, avx2;
    } table[] = {
        {"nothing read yet", {}, false, false, false},
        {"all", {{0, 0, osxsave | avx | fma, sse | sse2}, avx2, xmm | ymm | 1}, true, true, true},
        {"AVX2 without fused multiply-add", {{0, 0, osxsave | avx, sse | sse2}, avx2, xmm | ymm}, true, true, true},
        {"SSE2 at most", {{0, 0, 0, sse | sse2}, 0, 0}, true, true, false},
        {"SSE at most", {{0, 0, 0, sse}, 0, 0}, true, false, false},
        {"AVX at most", {{0, 0, osxsave | avx, sse | sse2}, ~avx2, xmm | ymm}, true, true, false},
        {"a system that does not preserve wide registers",
         {{0, 0, osxsave | avx, sse | sse2}, avx2, xmm},
         true,
         true,
         false},
        {"a state without the low halves", {{0, 0, osxsave | avx, sse | sse2}, avx2, ymm}, true, true, false},
        {"a system without XGETBV", {{0, 0, avx, sse | sse2}, avx2, xmm | ymm}, true, true, false},
        {"AVX hidden by a virtual machine", {{0, 0, osxsave, sse | sse2}, avx2, xmm | ymm}, true, true, false},
        {"third and fourth words cleared", {{~0u, ~0u, 0, 0}, ~0u, ~0u}, false, false, false},
    };
    for (const auto& row : table) {
        EXPECT_TRUE(offers(row.registers, cpu::none)) << row.what;
        EXPECT_EQ(offers(row.registers, cpu::sse), row.sse) << row.what;
        EXPECT_EQ(offers(row.registers, cpu::sse2), row.sse2) << row.what;
        EXPECT_EQ(offers(row.registers, cpu::avx2), row.avx2) << row.what;
    }
}

TEST(Processor, TheSwitchClearsTwoWordsAndReadsAllAgain)
{
    read_processor_features();
    const processor_registers read = processor;
    set_use_simd(0);
    EXPECT_EQ(processor.words[0], read.words[0]);
    EXPECT_EQ(processor.words[1], read.words[1]);
    EXPECT_EQ(processor.words[2] | processor.words[3], 0u);
    for (const cpu set : {cpu::sse, cpu::sse2, cpu::avx2}) EXPECT_FALSE(has(set));
    processor = {};
    set_use_simd(-1);
    EXPECT_EQ(processor.words[3], read.words[3]);
    EXPECT_EQ(has(cpu::avx2), __builtin_cpu_supports("avx2") != 0);  // the compiler's runtime asks on its own
    EXPECT_TRUE(has(cpu::sse2));                                     // every processor of this architecture
}

}  // namespace
