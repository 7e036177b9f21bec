#include "host/correction/multiply_spectrum.h"

#include "host/correction/finite_pixels.h"
#include "host/fft/fft.h"

namespace zentrix::host {

void multiply_by_transfer(engine& engine, const image_ref& source, const image_ref& destination,
                          const lens::transfer_arguments& a)
{
    const std::vector<script_value> in_order{source, a.lambda,   a.step, a.c20, a.c22,  a.c40, a.c60,
                                             a.c31,  a.c33,      a.c42,  a.c44, a.c51,  a.c53, a.c55,
                                             a.c62,  a.c64,      a.c66,  a.c2s, a.bdiv, a.vib, std::int64_t{a.envelope},
                                             a.tilt, destination};
    engine.call("ZXWTFMulDLL", in_order);
}

void multiply_spectrum(engine& engine, const image_ref& wave, const lens::transfer_arguments& arguments)
{
    const bool was_finite = count_not_finite(*wave) == 0;
    auto* const pixels = static_cast<std::complex<float>*>(wave->data());
    fft_plan transform{wave->size(0), wave->size(1)};
    transform.forward(pixels);
    multiply_by_transfer(engine, wave, wave, arguments);
    transform.backward(pixels);
    if (was_finite) require_finite_result(*wave);
}

void require_finite_result(const image& wave)
{
    if (count_not_finite(wave) > 0)
        throw script_error{"The result is not finite: the values of the wave are too large for single precision."};
}

}  // namespace zentrix::host
