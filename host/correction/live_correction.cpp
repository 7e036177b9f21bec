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

void live_correction::set(const lens::optics& setup, lens::damping envelope)
{
    lens::arguments_for(setup, width(), height(), lens::direction::remove, envelope);  // throws
    setup_ = setup;
    envelope_ = envelope;
    stale_ = true;
    result_ = nullptr;  // its memory may be used for the next picture
    failure_.clear();
    ++version_;
}

void live_correction::set_failure(const std::string& text)
{
    failure_ = text;
    ++version_;
}

void live_correction::multiply(const image_ref& part, const image_ref& destination)
{
    auto setup = setup_;
    if (part->size(0) != spectrum_->size(0))
        setup.pixel_nm *= static_cast<double>(spectrum_->size(0)) / static_cast<double>(part->size(0));
    const int columns = static_cast<int>(part->size(0)), rows = static_cast<int>(part->size(1));
    try {
        multiply_by_transfer(engine_, part, destination,
                             lens::arguments_for(setup, columns, rows, lens::direction::remove, envelope_));
    } catch (const std::bad_alloc&) {
        fail("There is not enough memory for this picture.");
    } catch (const std::exception& problem) {
        fail(problem.what());
    }
}

const image_ref& live_correction::result()
{
    if (!failure_.empty()) throw script_error{failure_};
    if (!stale_) return result_;
    try {
        if (!result_) result_ = spectrum_->clone();
        multiply(spectrum_, result_);
        transform_.backward(pixels_of(result_));
    } catch (const std::bad_alloc&) {
        fail("There is not enough memory for this picture.");
    }
    stale_ = false;
    return result_;
}

void live_correction::adopt(std::uint64_t of, const image_ref& image)
{
    if (of != version_) return;
    result_ = image;
    stale_ = false;
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
    result_ = nullptr;
    ++version_;
}

void live_correction::accept()
{
    const auto spectrum = result()->clone();
    transform_.forward(pixels_of(spectrum));
    spectrum_ = spectrum;
    ++version_;
}

}  // namespace zentrix::host
