#include "functions/rank/extreme_filter_simd.h"

#include "image/visit.h"

#include <xsimd/xsimd.hpp>

namespace qorv::functions {

#define INSTANTIATE(T)                                              \
    template struct extreme_rows<xsimd::avx2, T, extreme::minimum>; \
    template struct extreme_rows<xsimd::avx2, T, extreme::maximum>
ZENTRIX_FOR_EIGHT_REALS(INSTANTIATE);
#undef INSTANTIATE

}  // namespace qorv::functions
