#pragma once

#include <cstddef>

/// The elementary functions over contiguous arrays, in loops that the compiler vectorises; each element has the bits of
/// the function of one number. A result array may be one of the inputs; partly overlapping arrays are not allowed.
namespace qorv::numeric {

/// sine[i], cosine[i] of x[i] [rad]; sine and cosine must be two arrays.
void sincos(const float* x, float* sine, float* cosine, std::ptrdiff_t count) noexcept;
void exp(const float* x, float* result, std::ptrdiff_t count) noexcept;
void exp2(const float* x, float* result, std::ptrdiff_t count) noexcept;
void log(const float* x, float* result, std::ptrdiff_t count) noexcept;
void log2(const float* x, float* result, std::ptrdiff_t count) noexcept;
void pow(const float* base, const float* exponent, float* result, std::ptrdiff_t count) noexcept;
void atan2(const float* y, const float* x, float* result, std::ptrdiff_t count) noexcept;

}  // namespace qorv::numeric
