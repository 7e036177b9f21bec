#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "host/estimation/estimate.h"

namespace zentrix::host {

/// Makes the wave that is searched; null once `given_up` is true.
using wave_maker = std::function<image_ref(const std::atomic<bool>& given_up)>;

/// A search for aberrations on a thread of its own. The destructor stops it and waits for its end.
class running_estimate
{
  public:
    /// Starts the search.
    /// make_wave  called on the search's thread; must not throw anything but std::exception
    running_estimate(wave_maker make_wave, const lens::optics& setup, const estimate_options& options);

    void stop() noexcept { stopping_ = true; }
    bool stopping() const noexcept { return stopping_; }  ///< whether `stop` was called
    bool has_ended() const noexcept { return ended_; }

    /// 0 to 1.
    double fraction() const;
    /// The best coefficients since the last call; nothing if there are no new ones.
    std::optional<lens::aberrations> take_best();

    /// After its end: the result; nothing if it failed, with the reason in `failure`.
    const std::optional<estimate>& result() const noexcept { return result_; }
    const std::string& failure() const noexcept { return failure_; }

  private:
    void search(const wave_maker& make_wave, const lens::optics& setup, const estimate_options& options);

    mutable std::mutex access_;
    double fraction_ = 0;
    std::optional<lens::aberrations> best_;
    std::optional<estimate> result_;
    std::string failure_;
    std::atomic<bool> stopping_ = false, ended_ = false;
    std::jthread thread_;  // last, so that it ends before the other members
};

}  // namespace zentrix::host
