#include "functions/elementwise/powers_simd.h"

namespace qorv::functions {

template two_sources<float> pow_simd<xsimd::sse2>;

}  // namespace qorv::functions
