#pragma once

#include <complex>

#include "numeric/instruction_set.h"

/// What kernels for real and complex pixels share: type traits, the product, and the change of precision.
namespace qorv::numeric {

template <class T>
inline constexpr bool is_complex = false;
template <class Real>
inline constexpr bool is_complex<std::complex<Real>> = true;

template <class T>
struct real_type
{
    using type = T;
};
template <class Real>
struct real_type<std::complex<Real>>
{
    using type = Real;
};
/// The type of the parts of a complex type; a real type itself.
template <class T>
using real_of = typename real_type<T>::type;
/// The complex type of the same precision.
template <class T>
using complex_of = std::complex<real_of<T>>;

inline namespace ZENTRIX_INSTRUCTION_SET {

/// a * b by the formula alone: four products, one difference, one sum. The operator of std::complex also searches each
/// result for NaNs and recovers infinities from them. This is slow and not needed for pixels.
template <class Real>
constexpr std::complex<Real> product(std::complex<Real> a, std::complex<Real> b) noexcept
{
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}
template <class Real>
constexpr std::complex<Real> product(std::complex<Real> a, Real b) noexcept
{
    return {a.real() * b, a.imag() * b};
}
constexpr float product(float a, float b) noexcept { return a * b; }
constexpr double product(double a, double b) noexcept { return a * b; }

/// A real or complex number in double precision; exact.
constexpr double widened(double v) noexcept { return v; }
template <class Real>
constexpr std::complex<double> widened(std::complex<Real> v) noexcept
{
    return {v.real(), v.imag()};
}

/// A real or complex number of double precision rounded once to the type T, which is real or complex as the number is.
template <class T>
constexpr T rounded(double v) noexcept
{
    return static_cast<T>(v);
}
template <class T>
constexpr T rounded(std::complex<double> v) noexcept
{
    return {static_cast<real_of<T>>(v.real()), static_cast<real_of<T>>(v.imag())};
}

}  // namespace ZENTRIX_INSTRUCTION_SET
}  // namespace qorv::numeric
