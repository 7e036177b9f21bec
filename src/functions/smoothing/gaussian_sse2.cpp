#include "functions/smoothing/gaussian_simd.h"

namespace qorv::functions {

template void gaussian_simd<xsimd::sse2>(const dm::image<const float>&, const dm::image<float>&,
                                         const gauss::workspace&);
template void gaussian_simd<xsimd::sse2>(const dm::image<const double>&, const dm::image<double>&,
                                         const gauss::workspace&);

}  // namespace qorv::functions
