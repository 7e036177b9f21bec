#include "functions/elementwise/modulus_simd.h"

namespace qorv::functions {

template modulus_kernel<float> modulus_simd<xsimd::avx2, float>;
template modulus_kernel<double> modulus_simd<xsimd::avx2, double>;
template modulus_and_phase_kernel<float> modulus_and_phase_simd<xsimd::avx2>;

}  // namespace qorv::functions
