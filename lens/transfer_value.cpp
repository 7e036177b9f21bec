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
    auto sum = a.c66 * w + a.c55;  // Horner's scheme in powers of w
    sum = sum * w + (a.c44 + a.c64 * s);
    sum = sum * w + (a.c33 + a.c53 * s);
    sum = sum * w + (a.c22 + (a.c42 + a.c62 * s) * s);
    sum = (sum * w + (a.c31 + a.c51 * s) * s) * w;
    return (a.c20 + (a.c40 + a.c60 * s) * s) * s + sum.real();
}

/// Of the round terms.
std::complex<double> gradient(const transfer_arguments& a, std::complex<double> w)
{
    const double s = std::norm(w);
    return (2 * a.c20 + (4 * a.c40 + 6 * a.c60 * s) * s) * w;
}

/// The angle that chi is evaluated at.
std::complex<double> angle_at(const transfer_arguments& a, std::complex<double> frequency)
{
    return a.lambda * std::conj(frequency) + a.tilt;
}

}  // namespace

double aberration_function(const transfer_arguments& a, std::complex<double> frequency)
{
    return chi(a, angle_at(a, frequency)) - chi(a, a.tilt);
}

std::complex<double> transfer_value(const transfer_arguments& a, std::complex<double> frequency)
{
    const auto w = angle_at(a, frequency);
    const double phase = -aberration_function(a, frequency);
    if (!a.envelope) return std::polar(1.0, phase);
    const double spread = a.c2s * (std::norm(w) - std::norm(a.tilt));
    const double exponent = std::norm(gradient(a, w) - gradient(a, a.tilt)) * a.bdiv * a.bdiv / 2 +
                            spread * spread / 2 + 2 * std::norm(std::numbers::pi * a.vib * frequency);
    return std::polar(std::exp(-std::min(exponent, 50.0)), phase);
}

}  // namespace zentrix::lens
