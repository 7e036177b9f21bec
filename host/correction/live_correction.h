#pragma once

#include <chrono>
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

    /// Sets the correction.
    /// arguments  lens::arguments_for of the wave's size
    void set(const lens::transfer_arguments& arguments);
    /// Makes `result` fail with this text until the next `set`.
    void set_failure(const std::string& text);
    /// The corrected wave; the same image each time.
    /// Throws  script_error with the library's message, or "There is not enough memory for this picture."; the same
    ///         again until the next `set`
    const image_ref& result();
    /// The spectrum of the source. It is not changed later, so it may be kept for `use_spectrum`.
    const image_ref& spectrum() const noexcept { return spectrum_; }
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

    /// Work done so far.
    struct costs
    {
        int computed = 0;
        std::chrono::duration<double> transfer{}, transform{};  ///< sums
    };
    const costs& spent() const noexcept { return spent_; }

  private:
    [[noreturn]] void fail(const std::string& text);

    engine& engine_;
    fft_plan transform_;
    image_ref spectrum_, result_;
    lens::transfer_arguments arguments_;
    bool stale_ = false;
    std::string failure_;  ///< of the present correction; empty: none
    costs spent_;
};

}  // namespace zentrix::host
