#include "functions/elementwise/norm.h"

namespace qorv::functions {

template <class T>
void norm(const std::complex<T>* src, double scale, T* dst, std::ptrdiff_t count)
{
    const T factor = static_cast<T>(scale);
    const T* const from = reinterpret_cast<const T*>(src);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const T re = from[2 * i], im = from[2 * i + 1];
        dst[i] = (re * re + im * im) * factor;
    }
}

template <class T>
void norm(const std::complex<T>* src, double scale, std::complex<T>* dst, std::ptrdiff_t count)
{
    const T factor = static_cast<T>(scale);
    const T* const from = reinterpret_cast<const T*>(src);
    T* const to = reinterpret_cast<T*>(dst);
#pragma GCC ivdep
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const T re = from[2 * i], im = from[2 * i + 1];
        to[2 * i] = (re * re + im * im) * factor;
        to[2 * i + 1] = 0;
    }
}

template void norm(const std::complex<float>*, double, float*, std::ptrdiff_t);
template void norm(const std::complex<float>*, double, std::complex<float>*, std::ptrdiff_t);
template void norm(const std::complex<double>*, double, double*, std::ptrdiff_t);
template void norm(const std::complex<double>*, double, std::complex<double>*, std::ptrdiff_t);

}  // namespace qorv::functions
