#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "host/correction/live_correction.h"
#include "host/correction/queued_pictures.h"

namespace zentrix::host {

/// Pictures of the spectrum of a corrected wave, zero frequency at (width / 2, height / 2), complex. Shown as
/// display_mode::log_modulus, they are diffractograms: half the logarithm of the power. Aberrations change the phases
/// of the wave's spectrum only; the spectrum of its modulus or phase shows the rings of what is not corrected.
class diffractogram_pictures : public queued_pictures
{
  public:
    /// `corrected` must outlive the object.
    explicit diffractogram_pictures(live_correction& corrected) : corrected_{corrected} {}

    /// What is transformed: the displayed values of the wave, without their mean; nothing: the wave itself.
    void set_displayed(std::optional<display_mode> displayed) { displayed_ = displayed; }

    int width() const override { return corrected_.width(); }
    int height() const override { return corrected_.height(); }

    /// Whether a picture takes so long that it is not for drags.
    bool is_slow() const;

    /// Radial means of the newest picture that was taken, see radial_power; empty before the first one.
    const std::vector<double>& profile() const noexcept { return profile_; }

  protected:
    task begin(const picture_request& wanted) override;

  private:
    live_correction& corrected_;
    std::optional<display_mode> displayed_;
    std::vector<double> profile_;
};

/// The means of the power in rings around the zero frequency. Element i is the mean of the pixels whose frequency is
/// nearest to i / size of a pixel^-1, size the longer side, from 0 to 1/2; it is 0 for a ring without pixels.
/// spectrum  complex of two floats per pixel, zero frequency at (width / 2, height / 2); not square: a pixel is
///           1 / width to the right and 1 / height down
/// given_up  the result is undefined once it is true; null: never
std::vector<double> radial_power(const image& spectrum, const std::atomic<bool>* given_up = nullptr);

}  // namespace zentrix::host
