#include "functions/statistics/survey_simd.h"

namespace qorv::functions {

template survey_kernel<float> survey_simd<xsimd::sse2, float>;
template survey_kernel<double> survey_simd<xsimd::sse2, double>;

}  // namespace qorv::functions
