#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "host/engine/engine.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// The spectrum of a wave: known, or that of a corrected wave and computed when it is first needed. Any thread.
class lazy_spectrum
{
  public:
    /// spectrum  complex of two floats per pixel, zero frequency at (width / 2, height / 2); must not change any more
    explicit lazy_spectrum(image_ref spectrum) : spectrum_{std::move(spectrum)} {}
    /// The spectrum of the wave that a correction makes from another one.
    /// engine     must outlive the object
    /// arguments  lens::arguments_for of the wave's size
    /// corrected  that wave if it is known already, which must not change any more; else null
    lazy_spectrum(engine& engine, std::shared_ptr<const lazy_spectrum> former,
                  const lens::transfer_arguments& arguments, image_ref corrected);

    /// The spectrum; not to be changed. The first call computes it, with the bits of a forward transform of the
    /// corrected wave; other threads wait meanwhile. After a failure, the next call tries again.
    /// given_up  looked at between the steps; null: never
    /// Returns   null if it was given up
    /// Throws    script_error with the library's message, or for too little memory; std::bad_alloc
    image_ref get(const std::atomic<bool>* given_up = nullptr) const;

  private:
    image_ref compute(const std::atomic<bool>* given_up) const;

    engine* engine_ = nullptr;
    lens::transfer_arguments arguments_{};
    mutable std::mutex access_;
    mutable image_ref spectrum_;                           ///< null until it is known
    mutable std::shared_ptr<const lazy_spectrum> former_;  ///< null once it is
    mutable image_ref corrected_;                          ///< the same
};

}  // namespace zentrix::host
