#pragma once

#include <cstdint>
#include <string>

#include "host/engine/engine.h"
#include "host/fft/fft.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// A wave that is corrected repeatedly while the user turns knobs. The transform of the source is kept, so a correction
/// costs a multiplication and a transform back, and it is computed only when its result is needed. The result has the
/// same bits as that of multiply_spectrum.
class live_correction
{
  public:
    /// wave  complex of two floats per pixel, two dimensions, contiguous; not changed
    live_correction(engine& engine, const image_ref& wave);

    /// Sets the correction that removes the aberrations of `setup`.
    /// Throws  std::invalid_argument as lens::arguments_for; the correction is then as it was
    void set(const lens::optics& setup, lens::damping envelope);
    /// Makes `result` fail with this text until the next `set`.
    void set_failure(const std::string& text);
    /// The reason why there is no result; empty: none is known.
    const std::string& failure() const noexcept { return failure_; }
    /// The corrected wave; in another image after each `set`.
    /// Throws  script_error with the library's message, or "There is not enough memory for this picture."; the same
    ///         again until the next `set`
    const image_ref& result();
    /// Makes a spectrum the source of further corrections, which `spectrum` has returned before.
    void use_spectrum(const image_ref& spectrum);
    /// The wave that is corrected, in an image of its own.
    /// Throws  std::bad_alloc, or script_error for too little memory
    image_ref source();
    /// Makes the result the source of further corrections.
    /// Throws  as `result`, or std::bad_alloc or script_error for too little memory; the source is then as it was
    void accept();

    int width() const noexcept { return static_cast<int>(spectrum_->size(0)); }
    int height() const noexcept { return static_cast<int>(spectrum_->size(1)); }

    /// The spectrum of the source; not to be changed. Another image after `accept`. It may be kept for use_spectrum.
    const image_ref& spectrum() const noexcept { return spectrum_; }
    /// Multiplies a part of the spectrum by the present transfer function.
    /// part         the middle of the spectrum; its sides have the ratio of the wave's
    /// destination  of the same size; may be the same image
    /// Throws  script_error with the library's message, which then is the failure
    void multiply(const image_ref& part, const image_ref& destination);

    /// Changes with each `set`, `set_failure`, `accept` and `use_spectrum`.
    std::uint64_t version() const noexcept { return version_; }
    /// Makes `image` the result, which was computed elsewhere: by `multiply` of the whole spectrum and a transform
    /// back. Does nothing unless `of` is the present version.
    void adopt(std::uint64_t of, const image_ref& image);

  private:
    [[noreturn]] void fail(const std::string& text);

    engine& engine_;
    fft_plan transform_;
    image_ref spectrum_, result_;
    lens::optics setup_;
    lens::damping envelope_ = lens::damping::off;
    bool stale_ = false;
    std::uint64_t version_ = 0;
    std::string failure_;  ///< of the present correction; empty: none
};

}  // namespace zentrix::host
