#include "functions/rank/median_filter_simd.h"

namespace qorv::functions {

template void median_row<xsimd::avx2>(const float* const*, std::ptrdiff_t, float*, std::ptrdiff_t);
template void median_row<xsimd::avx2>(const double* const*, std::ptrdiff_t, double*, std::ptrdiff_t);

}  // namespace qorv::functions
