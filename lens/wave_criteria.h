#pragma once

#include <complex>
#include <cstddef>
#include <vector>

/// Numbers that are extreme when a wave is free of aberrations. Aberrations change none of the spectrum's moduli, so
/// that each criterion needs an assumption on the object.
namespace zentrix::lens {

/// The pixels that a criterion is computed of.
struct weighted_wave
{
    const std::complex<float>* pixels;
    const float* weights;  ///< one for each pixel, not negative, their sum is 1
    std::size_t count;
};

/// Variance of the modulus over its squared mean: zero for an object that changes the phase only, and for no other
/// wave. Odd aberrations (B2, A2) change it in second order of the object's phase only.
/// gradient  null, or receives the derivative e of each pixel: a change d of the pixels changes the criterion by the
///           sum of Re{conj(e) d}. It may be the memory of the pixels
/// Source    Lehmann, Ultramicroscopy 85 (2000) 165-182: the least amplitude contrast of a reconstructed exit wave
double modulus_variance(const weighted_wave& wave, std::complex<float>* gradient);

/// Skewness of the phase: the third central moment over the 3/2-th power of the second. Columns of atoms on a flat
/// ground are positive peaks, and every blur makes it smaller, odd aberrations in first order. Phases are relative to
/// that of the mean pixel; pixels that differ by pi or more are wrapped.
/// gradient  as of modulus_variance
/// Source    Wiggins, Geophysical Exploration 16 (1978) 21-35: deconvolution to the sparsest signal, by its kurtosis;
///           Donoho, in Applied Time Series Analysis II, Academic Press (1981): other cumulants such as skewness
double phase_skewness(const weighted_wave& wave, std::complex<float>* gradient);

/// The length of the gradient of the modulus, for each pixel. Differences are central, twice the derivative, and the
/// wave is taken as periodic.
/// width, height  of the wave; rows contiguous
std::vector<float> slopes_of_modulus(const std::complex<float>* pixels, std::size_t width, std::size_t height);

/// Tamura's coefficient of the gradient of the modulus: the square root of its standard deviation over its mean. It is
/// largest where an amplitude object has its sharpest edges.
/// width, height  of the wave; rows contiguous
/// Source    Zhang, Wang, Wu, Zhang, Ozcan, Optics Letters 42 (2017) 3824-3827; the coefficient: Memmolo, Distante,
///           Paturzo, Finizio, Ferraro, Javidi, Optics Letters 36 (2011) 1945-1947
double tamura_of_gradient(const weighted_wave& wave, std::size_t width, std::size_t height);

}  // namespace zentrix::lens
