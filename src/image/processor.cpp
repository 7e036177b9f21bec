#include "image/processor.h"

#include <cpuid.h>

namespace qorv::dm {

std::uint32_t processor_words[4] = {};

void read_processor_features() noexcept
{
    unsigned a = 0, b = 0, c = 0, d = 0;
    if (!__get_cpuid(1, &a, &b, &c, &d)) a = b = c = d = 0;
    processor_words[0] = a;
    processor_words[1] = b;
    processor_words[2] = c;
    processor_words[3] = d;
}

void set_use_simd(std::int32_t use) noexcept
{
    if (use != 0)
        read_processor_features();
    else
        processor_words[2] = processor_words[3] = 0;
}

}  // namespace qorv::dm
