#pragma once

namespace zentrix::host {

struct sine_cosine
{
    float sine, cosine;
};

/// Sine and cosine without branches, for loops that the compiler vectorises. The error is below 2e-7 for angles up to
/// 1e3 rad and grows with the angle like its rounding.
/// Source  the reduction by parts of pi / 2: Cody, Waite, Software Manual for the Elementary Functions (1980); the
///         polynomials are least-maximum fits of degree 7 and 8 on [-pi/4, pi/4]
inline sine_cosine sine_cosine_of(float angle)
{
    constexpr float rounder = 12582912.0F;  // 1.5 * 2^23: adding it rounds to an integer
    constexpr float pi_half_1 = 1.5703125F, pi_half_2 = 4.837512969970703e-4F, pi_half_3 = 7.54978995489188e-8F;
    const float shifted = angle * 0.63661977236758134F + rounder;
    const float turns = shifted - rounder;
    const float x = ((angle - turns * pi_half_1) - turns * pi_half_2) - turns * pi_half_3;
    const float s = x * x;
    const float sine = x + x * s * (-1.6666654611e-1F + s * (8.3321608736e-3F + s * -1.9515295891e-4F));
    const float cosine =
        1.0F - 0.5F * s + s * s * (4.166664568298827e-2F + s * (-1.388731625493765e-3F + s * 2.443315711809948e-5F));
    const int quarter = static_cast<int>(turns);
    const bool swapped = (quarter & 1) != 0;
    const float a = swapped ? cosine : sine, b = swapped ? sine : cosine;
    return {(quarter & 2) != 0 ? -a : a, ((quarter + 1) & 2) != 0 ? -b : b};
}

}  // namespace zentrix::host
