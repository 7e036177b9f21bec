#include "optics/wave_transfer_simd.h"

namespace qorv::optics {

template transfer_row_kernel transfer_row_simd<xsimd::avx2>;

}  // namespace qorv::optics
