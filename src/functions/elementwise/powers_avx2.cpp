#include "functions/elementwise/powers_simd.h"

namespace qorv::functions {

template one_source<float> exp2_simd<xsimd::avx2>;
template one_source<float> log2_simd<xsimd::avx2>;
template two_sources<float> pow_simd<xsimd::avx2>;

}  // namespace qorv::functions
