#include "host/correction/kept_spectrum.h"

#include "host/correction/multiply_spectrum.h"

namespace zentrix::host {

namespace {

std::complex<float>* pixels_of(const image_ref& wave) { return static_cast<std::complex<float>*>(wave->data()); }

}  // namespace

kept_spectrum::kept_spectrum(const image_ref& wave)
    : transform_{wave->size(0), wave->size(1)}, spectrum_{wave}, was_finite_{transform_.forward(pixels_of(spectrum_))}
{}

void kept_spectrum::multiply(engine& engine, const lens::transfer_arguments& arguments, const image_ref& destination)
{
    multiply_by_transfer(engine, spectrum_, destination, arguments);
    if (!transform_.backward(pixels_of(destination)) && was_finite_) throw script_error{result_not_finite};
}

}  // namespace zentrix::host
