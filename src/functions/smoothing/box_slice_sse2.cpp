#include "functions/smoothing/box_slice_simd.h"

namespace qorv::functions {

#define INSTANTIATE(T)                                           \
    template box_slice_kernel<T> box_slice_simd<xsimd::sse2, T>; \
    template box_slice2_kernel<T> box_slice2_simd<xsimd::sse2, T>
INSTANTIATE(float);
INSTANTIATE(double);
INSTANTIATE(std::complex<float>);
INSTANTIATE(std::complex<double>);
#undef INSTANTIATE

}  // namespace qorv::functions
