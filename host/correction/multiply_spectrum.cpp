#include "host/correction/multiply_spectrum.h"

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

spectrum_costs multiply_spectrum(engine& engine, const image_ref& wave, const lens::transfer_arguments& arguments)
{
    using clock = std::chrono::steady_clock;
    auto* const pixels = static_cast<std::complex<float>*>(wave->data());
    const auto start = clock::now();
    fft_plan transform{wave->size(0), wave->size(1)};
    const bool was_finite = transform.forward(pixels);
    const auto transformed = clock::now();
    multiply_by_transfer(engine, wave, wave, arguments);
    const auto multiplied = clock::now();
    if (!transform.backward(pixels) && was_finite) throw script_error{result_not_finite};
    return {clock::now() - multiplied + (transformed - start), multiplied - transformed};
}

}  // namespace zentrix::host
