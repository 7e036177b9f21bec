#pragma once

#include "host/engine/engine.h"
#include "host/fft/fft.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// The spectrum of a wave, transformed once to compute many waves with different aberrations from it. Each has the same
/// bits as that of multiply_spectrum.
class kept_spectrum
{
  public:
    /// wave  complex of two floats per pixel, two dimensions, contiguous. Its memory is kept and becomes the spectrum:
    ///       the caller must not use it any more
    explicit kept_spectrum(const image_ref& wave);

    /// Computes the wave whose spectrum is the kept one times the transfer function.
    /// arguments    lens::arguments_for of the wave's size
    /// destination  like the wave; overwritten
    /// Throws  as multiply_spectrum; the contents of `destination` are then undefined
    void multiply(engine& engine, const lens::transfer_arguments& arguments, const image_ref& destination);

    int width() const noexcept { return static_cast<int>(spectrum_->size(0)); }
    int height() const noexcept { return static_cast<int>(spectrum_->size(1)); }

  private:
    fft_plan transform_;
    image_ref spectrum_;
    bool was_finite_;
};

}  // namespace zentrix::host
