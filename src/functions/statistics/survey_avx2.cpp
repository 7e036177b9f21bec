#include "functions/statistics/survey_simd.h"

namespace qorv::functions {

template survey_kernel<float> survey_simd<xsimd::avx2, float>;
template survey_kernel<double> survey_simd<xsimd::avx2, double>;

}  // namespace qorv::functions
