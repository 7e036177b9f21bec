#include "functions/smoothing/gaussian_simd.h"

namespace qorv::functions {

template gaussian_kernel<float> gaussian_simd<xsimd::avx2, float>;
template gaussian_kernel<double> gaussian_simd<xsimd::avx2, double>;

}  // namespace qorv::functions
