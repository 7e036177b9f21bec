#pragma once

#include <functional>

#include "host/correction/queued_pictures.h"
#include "host/engine/engine.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// Pictures of the phase contrast transfer function: sin(chi), damped by the envelope; real, from -1 to 1, zero
/// frequency at (width / 2, height / 2). In each resolution, the frequency 1 / (2 pixel) is at the edges. Where the
/// function is undersampled in the picture's resolution, the picture is undersampled_ink.
class transfer_pictures : public queued_pictures
{
  public:
    /// width, height  of the spectrum [pixels]
    /// setup          returns the present optics
    transfer_pictures(engine& engine, int width, int height, std::function<lens::optics()> setup);

    int width() const override { return width_; }
    int height() const override { return height_; }

  protected:
    task begin(const picture_request& wanted) override;

  private:
    engine& engine_;
    int width_, height_;
    std::function<lens::optics()> setup_;
};

/// That function on a spectrum of width x height pixels.
/// Throws  std::invalid_argument as lens::arguments_for; script_error with the library's message
image_ref transfer_function_image(engine& engine, const lens::optics& setup, int width, int height);

}  // namespace zentrix::host
