#include "functions/smoothing/gaussian_simd.h"

namespace qorv::functions {

template gaussian_kernel<float> gaussian_simd<xsimd::sse2, float>;
template gaussian_kernel<double> gaussian_simd<xsimd::sse2, double>;

}  // namespace qorv::functions
