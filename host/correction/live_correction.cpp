#include "host/correction/live_correction.h"

#include <algorithm>

#include "host/correction/multiply_spectrum.h"

namespace zentrix::host {

namespace {

std::complex<float>* pixels_of(const image_ref& wave) { return static_cast<std::complex<float>*>(wave->data()); }

}  // namespace

live_correction::live_correction(engine& engine, const image_ref& wave)
    : engine_{engine}, transform_{wave->size(0), wave->size(1)}, spectrum_{wave->clone()}, result_{wave->clone()}
{
    keep_transform_of(wave);
}

void live_correction::keep_transform_of(const image_ref& wave)
{
    std::copy_n(pixels_of(wave), wave->count(), pixels_of(spectrum_));
    transform_.forward(pixels_of(spectrum_));
}

void live_correction::set(const lens::transfer_arguments& arguments)
{
    arguments_ = arguments;
    stale_ = true;
    failure_.clear();
}

void live_correction::set_failure(const std::string& text)
{
    stale_ = false;
    failure_ = text;
}

const image_ref& live_correction::result()
{
    if (!failure_.empty()) throw script_error{failure_};
    if (!stale_) return result_;
    stale_ = false;
    using clock = std::chrono::steady_clock;
    const auto start = clock::now();
    try {
        multiply_by_transfer(engine_, spectrum_, result_, arguments_);
    } catch (const script_error& problem) {
        failure_ = problem.what();  // `result_` is incomplete
        throw;
    }
    const auto multiplied = clock::now();
    transform_.backward(pixels_of(result_));
    spent_.transfer += multiplied - start;
    spent_.transform += clock::now() - multiplied;
    ++spent_.computed;
    return result_;
}

void live_correction::accept() { keep_transform_of(result()); }

}  // namespace zentrix::host
