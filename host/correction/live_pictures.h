#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include "host/correction/cut_spectrum.h"
#include "host/correction/live_correction.h"
#include "host/correction/queued_pictures.h"

namespace zentrix::host {

/// Pictures of a wave and its corrections. A picture that is smaller on the screen than the wave is computed at the
/// screen's resolution from the cut spectrum, see cut_spectrum.h; only pictures of full resolution are slow. The latter
/// have the same bits as the correction's result, and become that.
class live_pictures : public queued_pictures
{
  public:
    /// `corrected` must outlive the object.
    explicit live_pictures(live_correction& corrected);

    int width() const override { return corrected_.width(); }
    int height() const override { return corrected_.height(); }

    /// Work done so far.
    struct costs
    {
        int computed = 0;
        std::chrono::duration<double> transfer{}, transform{}, shades{};  ///< sums
    };
    const costs& spent() const noexcept { return spent_; }

  protected:
    task begin(const picture_request& wanted) override;

  private:
    struct tools;
    struct product;

    image_ref unused_image(spectrum_size size);

    live_correction& corrected_;
    std::vector<image_ref> memory_;  ///< of products, used again when nobody else has it
    std::shared_ptr<product> last_;  ///< whose memory is not in memory_ yet; null: none
    std::shared_ptr<tools> tools_;   ///< of the worker
    costs spent_;
};

}  // namespace zentrix::host
