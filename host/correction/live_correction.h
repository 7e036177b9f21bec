#pragma once

#include <chrono>
#include <string>

#include "host/engine/engine.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// A wave that is corrected again and again while its user turns knobs. The source's transform is kept, so that each new
/// correction costs a multiplication and a transform back; a correction that nobody asked the result of is never
/// computed. The result is that of multiply_spectrum to the last bit.
class live_correction
{
  public:
    /// `wave` is complex of two floats a pixel, two dimensions, contiguous; it is not changed.
    live_correction(engine& engine, const image_ref& wave);

    /// Asks for another correction; `arguments` are those of lens::arguments_for of the wave's size.
    void ask(const lens::transfer_arguments& arguments);
    /// What was asked for last cannot be computed: `result` fails with this text until asked for anew.
    void refuse(const std::string& why);
    /// The wave under the correction last asked for; the same image each time.
    /// Throws  script_error with the library's message, each time until another correction is asked for
    const image_ref& result();
    /// Makes the result the source of further corrections. Throws as `result`, and nothing has changed then
    void accept();

    int width() const noexcept { return static_cast<int>(spectrum_->size(0)); }
    int height() const noexcept { return static_cast<int>(spectrum_->size(1)); }

    /// What the corrections so far have cost.
    struct costs
    {
        int computed = 0;
        std::chrono::duration<double> transfer{}, transform{};  ///< sums
    };
    const costs& spent() const noexcept { return spent_; }

  private:
    void keep_transform_of(const image_ref& wave);

    engine& engine_;
    image_ref spectrum_, result_;
    lens::transfer_arguments arguments_;
    bool stale_ = false;
    std::string failure_;  ///< of the correction last asked for
    costs spent_;
};

}  // namespace zentrix::host
