#include "host/correction/lazy_spectrum.h"

#include <utility>

#include "host/correction/multiply_spectrum.h"
#include "host/fft/fft.h"

namespace zentrix::host {

lazy_spectrum::lazy_spectrum(engine& engine, std::shared_ptr<const lazy_spectrum> former,
                             const lens::transfer_arguments& arguments, image_ref corrected)
    : engine_{&engine}, arguments_{arguments}, former_{std::move(former)}, corrected_{std::move(corrected)}
{}

image_ref lazy_spectrum::get(const std::atomic<bool>* given_up) const
{
    const std::lock_guard guard{access_};
    if (!spectrum_) spectrum_ = compute(given_up);
    if (spectrum_) {
        former_ = nullptr;
        corrected_ = nullptr;
    }
    return spectrum_;
}

image_ref lazy_spectrum::compute(const std::atomic<bool>* given_up) const
{
    const auto is_given_up = [&] { return given_up && *given_up; };
    if (is_given_up()) return nullptr;
    const auto from = corrected_ ? corrected_ : former_->get(given_up);
    if (!from) return nullptr;
    auto wave = from->clone();
    auto* const pixels = static_cast<std::complex<float>*>(wave->data());
    fft_plan transform{wave->size(0), wave->size(1)};
    transform.give_up_on(given_up);
    if (!corrected_) {
        multiply_by_transfer(*engine_, wave, wave, arguments_);
        transform.backward(pixels);
    }
    transform.forward(pixels);
    return is_given_up() ? nullptr : wave;
}

}  // namespace zentrix::host
