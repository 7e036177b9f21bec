#include "functions/smoothing/box_pass_simd.h"

namespace qorv::functions {

template box_pass_kernel<float> box_pass_simd<xsimd::sse2, float>;
template box_pass_kernel<double> box_pass_simd<xsimd::sse2, double>;
template box_pass_kernel<std::complex<float>> box_pass_simd<xsimd::sse2, std::complex<float>>;
template box_pass_kernel<std::complex<double>> box_pass_simd<xsimd::sse2, std::complex<double>>;

}  // namespace qorv::functions
