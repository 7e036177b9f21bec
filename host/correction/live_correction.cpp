#include "host/correction/live_correction.h"

#include <new>

#include "host/correction/multiply_spectrum.h"

namespace zentrix::host {

namespace {

std::complex<float>* pixels_of(const image_ref& wave) { return static_cast<std::complex<float>*>(wave->data()); }

}  // namespace

live_correction::live_correction(engine& engine, const image_ref& wave)
    : engine_{engine}, transform_{wave->size(0), wave->size(1)}, spectrum_{wave->clone()}, result_{wave->clone()}
{
    transform_.forward(pixels_of(spectrum_));
}

void live_correction::set(const lens::transfer_arguments& arguments)
{
    arguments_ = arguments;
    stale_ = true;
    failure_.clear();
}

void live_correction::set_failure(const std::string& text) { failure_ = text; }

const image_ref& live_correction::result()
{
    if (!failure_.empty()) throw script_error{failure_};
    if (!stale_) return result_;
    using clock = std::chrono::steady_clock;
    const auto start = clock::now();
    try {
        multiply_by_transfer(engine_, spectrum_, result_, arguments_);
        const auto multiplied = clock::now();
        transform_.backward(pixels_of(result_));
        spent_.transfer += multiplied - start;
        spent_.transform += clock::now() - multiplied;
    } catch (const std::bad_alloc&) {
        fail("There is not enough memory for this picture.");
    } catch (const std::exception& problem) {
        fail(problem.what());
    }
    stale_ = false;
    ++spent_.computed;
    return result_;
}

void live_correction::fail(const std::string& text)
{
    set_failure(text);  // `result_` is incomplete
    throw script_error{text};
}

image_ref live_correction::source()
{
    auto wave = spectrum_->clone();
    transform_.backward(pixels_of(wave));
    return wave;
}

void live_correction::use_spectrum(const image_ref& spectrum)
{
    spectrum_ = spectrum;
    stale_ = true;
}

void live_correction::accept()
{
    const auto spectrum = result()->clone();
    transform_.forward(pixels_of(spectrum));
    spectrum_ = spectrum;
}

}  // namespace zentrix::host
