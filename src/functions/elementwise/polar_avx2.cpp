#include "functions/elementwise/polar_simd.h"

namespace qorv::functions {

template polar_kernel<float> polar_simd<xsimd::avx2>;

}  // namespace qorv::functions
