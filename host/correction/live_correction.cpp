#include "host/correction/live_correction.h"

#include <new>

#include "host/correction/multiply_spectrum.h"

namespace zentrix::host {

namespace {

std::complex<float>* pixels_of(const image_ref& wave) { return static_cast<std::complex<float>*>(wave->data()); }

std::shared_ptr<const lazy_spectrum> spectrum_of(const image& wave)
{
    auto spectrum = wave.clone();
    forward_fft(pixels_of(spectrum), spectrum->size(0), spectrum->size(1));
    return std::make_shared<lazy_spectrum>(std::move(spectrum));
}

}  // namespace

void present_correction::multiply(const image_ref& part, const image_ref& destination) const
{
    const int columns = static_cast<int>(part->size(0)), rows = static_cast<int>(part->size(1));
    auto sampled = setup;
    if (columns != width) sampled.pixel_nm *= static_cast<double>(width) / columns;
    multiply_by_transfer(*host, part, destination,
                         lens::arguments_for(sampled, columns, rows, lens::direction::remove, envelope));
}

live_correction::live_correction(engine& engine, const image_ref& wave)
    : engine_{engine},
      width_{static_cast<int>(wave->size(0))},
      height_{static_cast<int>(wave->size(1))},
      spectrum_{spectrum_of(*wave)},
      result_{wave->clone()}
{}

void live_correction::set(const lens::optics& setup, lens::damping envelope)
{
    lens::arguments_for(setup, width_, height_, lens::direction::remove, envelope);  // throws
    setup_ = setup;
    envelope_ = envelope;
    result_ = nullptr;  // its memory may be used for the next picture
    failure_.clear();
    ++version_;
}

void live_correction::set_failure(const std::string& text)
{
    failure_ = text;
    ++version_;
}

const image_ref& live_correction::result()
{
    if (!failure_.empty()) throw script_error{failure_};
    if (result_) return result_;
    try {
        auto wave = spectrum_->get()->clone();
        present().multiply(wave, wave);
        require_finite_result(true, fft_plan{width_, height_}.backward(pixels_of(wave)));
        result_ = std::move(wave);
    } catch (const std::bad_alloc&) {
        fail("There is not enough memory for this picture.");
    } catch (const std::exception& problem) {
        fail(problem.what());
    }
    return result_;
}

void live_correction::adopt(std::uint64_t of, const image_ref& image)
{
    if (of == version_) result_ = image;
}

void live_correction::fail(const std::string& text)
{
    set_failure(text);
    throw script_error{text};
}

image_ref wave_of(const lazy_spectrum& spectrum, const std::atomic<bool>* given_up)
{
    const auto known = spectrum.get(given_up);
    if (!known) return nullptr;
    auto wave = known->clone();
    fft_plan transform{wave->size(0), wave->size(1)};
    transform.give_up_on(given_up);
    transform.backward(pixels_of(wave));
    return given_up && *given_up ? nullptr : wave;
}

void live_correction::use_spectrum(const std::shared_ptr<const lazy_spectrum>& spectrum)
{
    spectrum_ = spectrum;
    result_ = nullptr;
    ++version_;
}

void live_correction::accept()
{
    if (!failure_.empty()) throw script_error{failure_};
    const auto arguments = lens::arguments_for(setup_, width_, height_, lens::direction::remove, envelope_);
    use_spectrum(std::make_shared<lazy_spectrum>(engine_, spectrum_, arguments, result_));
}

}  // namespace zentrix::host
