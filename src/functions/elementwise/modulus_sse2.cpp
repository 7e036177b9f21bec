#include "functions/elementwise/modulus_simd.h"

namespace qorv::functions {

template modulus_kernel<float> modulus_simd<xsimd::sse2, float>;
template modulus_kernel<double> modulus_simd<xsimd::sse2, double>;

}  // namespace qorv::functions
