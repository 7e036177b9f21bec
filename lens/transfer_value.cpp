#include "lens/transfer_value.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zentrix::lens {

namespace {

/// The aberration function [rad] at the angle w, which is the conjugate of that on the displayed image.
double chi(const transfer_arguments& a, std::complex<double> w)
{
    const double s = std::norm(w);
    const auto sum = (a.c31 + a.c51 * s) * s * w + (a.c22 + a.c42 * s + a.c62 * s * s) * w * w +
                     (a.c33 + a.c53 * s) * w * w * w + (a.c44 + a.c64 * s) * std::pow(w, 4) + a.c55 * std::pow(w, 5) +
                     a.c66 * std::pow(w, 6);
    return (a.c20 + (a.c40 + a.c60 * s) * s) * s + sum.real();
}

/// Of the round terms.
std::complex<double> gradient(const transfer_arguments& a, std::complex<double> w)
{
    const double s = std::norm(w);
    return (2 * a.c20 + (4 * a.c40 + 6 * a.c60 * s) * s) * w;
}

}  // namespace

std::complex<double> transfer_value(const transfer_arguments& a, std::complex<double> frequency)
{
    const auto w = a.lambda * std::conj(frequency) + a.tilt;
    const double phase = chi(a, a.tilt) - chi(a, w);
    if (!a.envelope) return std::polar(1.0, phase);
    const double spread = a.c2s * (std::norm(w) - std::norm(a.tilt));
    const double exponent = std::norm(gradient(a, w) - gradient(a, a.tilt)) * a.bdiv * a.bdiv / 2 +
                            spread * spread / 2 + 2 * std::norm(std::numbers::pi * a.vib * frequency);
    return std::polar(std::exp(-std::min(exponent, 50.0)), phase);
}

}  // namespace zentrix::lens
