#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/correction/lazy_spectrum.h"
#include "host/engine/engine.h"
#include "host/fft/fft.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// What a live_correction does at one moment. Can be copied and used on any thread while the engine exists.
struct present_correction
{
    engine* host = nullptr;
    std::shared_ptr<const lazy_spectrum> spectrum;  ///< of the source
    int width = 0;                                  ///< of the wave [pixels]
    lens::optics setup;
    lens::damping envelope = lens::damping::off;

    /// Multiplies a part of the spectrum by the transfer function.
    /// part         the middle of the spectrum; its sides have the ratio of the wave's
    /// destination  of the same size; may be the same image
    /// Throws  script_error with the library's message; std::bad_alloc
    void multiply(const image_ref& part, const image_ref& destination) const;
};

/// The wave of a spectrum, in an image of its own. Any thread.
/// given_up, Returns, Throws  as lazy_spectrum::get
image_ref wave_of(const lazy_spectrum& spectrum, const std::atomic<bool>* given_up = nullptr);

/// A wave that is corrected repeatedly while the user turns knobs. The transform of the source is kept, so a correction
/// costs a multiplication and a transform back, and it is computed only when its result is needed. The result has the
/// same bits as that of multiply_spectrum. For one thread, the user's.
class live_correction
{
  public:
    /// wave  complex of two floats per pixel, two dimensions, contiguous, all finite; not changed
    live_correction(engine& engine, const image_ref& wave);

    /// Sets the correction that removes the aberrations of `setup`.
    /// Throws  std::invalid_argument as lens::arguments_for; the correction is then as it was
    void set(const lens::optics& setup, lens::damping envelope);
    /// Makes `result` fail with this text until the next `set`.
    void set_failure(const std::string& text);
    /// The reason why there is no result; empty: none is known.
    const std::string& failure() const noexcept { return failure_; }
    /// The corrected wave; in another image after each `set`.
    /// Throws  script_error with the library's message, "There is not enough memory for this picture.", or as
    ///         require_finite_result; the same again until the next `set`
    const image_ref& result();
    /// Makes a spectrum the source of further corrections, which `spectrum` has returned before. To be followed by
    /// `set`.
    void use_spectrum(const std::shared_ptr<const lazy_spectrum>& spectrum);
    /// The wave that is corrected, in an image of its own.
    /// Throws  std::bad_alloc; script_error as `result`, and for too little memory
    image_ref source() const { return wave_of(*spectrum_); }
    /// Makes the result the source of further corrections; quick, since it is computed when it is needed. To be
    /// followed by `set`.
    /// Throws  script_error if the result is known to fail; the source is then as it was
    void accept();

    int width() const noexcept { return width_; }
    int height() const noexcept { return height_; }

    /// The spectrum of the source. Another one after `accept`. It may be kept for use_spectrum.
    const std::shared_ptr<const lazy_spectrum>& spectrum() const noexcept { return spectrum_; }
    present_correction present() const { return {&engine_, spectrum_, width_, setup_, envelope_}; }

    /// Changes with each `set`, `set_failure`, `accept` and `use_spectrum`.
    std::uint64_t version() const noexcept { return version_; }
    /// The result if it is known, else null.
    const image_ref& known_result() const noexcept { return result_; }
    /// Makes `image` the result, which was computed elsewhere: by `multiply` of the whole spectrum and a transform
    /// back. Does nothing unless `of` is the present version.
    void adopt(std::uint64_t of, const image_ref& image);

  private:
    [[noreturn]] void fail(const std::string& text);

    engine& engine_;
    int width_, height_;
    std::shared_ptr<const lazy_spectrum> spectrum_;
    image_ref result_;  ///< null: not computed yet
    lens::optics setup_;
    lens::damping envelope_ = lens::damping::off;
    std::uint64_t version_ = 0;
    std::string failure_;  ///< of the present correction; empty: none
};

}  // namespace zentrix::host
