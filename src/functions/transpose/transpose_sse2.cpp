#include "functions/transpose/transpose_simd.h"

namespace qorv::functions {

template transpose_kernel transpose_simd<xsimd::sse2>;

}  // namespace qorv::functions
