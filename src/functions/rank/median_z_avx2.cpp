#include "functions/rank/median_z_simd.h"

namespace qorv::functions {

template void sort_columns<xsimd::avx2>(const column_block<float>&, const sorting_network&);
template void sort_columns<xsimd::avx2>(const column_block<double>&, const sorting_network&);
template void medians_of_halves<xsimd::avx2>(const column_block<float>&, std::ptrdiff_t, float*);
template void medians_of_halves<xsimd::avx2>(const column_block<double>&, std::ptrdiff_t, double*);

}  // namespace qorv::functions
