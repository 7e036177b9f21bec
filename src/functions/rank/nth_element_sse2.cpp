#include "functions/rank/nth_element_simd.h"

namespace qorv::functions {

template row_counts count_row<xsimd::sse2>(const float*, std::ptrdiff_t, float, float, float*);
template row_counts count_row<xsimd::sse2>(const double*, std::ptrdiff_t, double, double, double*);

}  // namespace qorv::functions
