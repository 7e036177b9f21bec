#include "host/windows/running_estimate.h"

#include <exception>
#include <new>
#include <utility>

namespace zentrix::host {

running_estimate::running_estimate(wave_maker make_wave, const lens::optics& setup, const estimate_options& options)
    : thread_{[this, make_wave = std::move(make_wave), setup, options](const std::stop_token& token) {
          const std::stop_callback on_stop{token, [this] { stop(); }};
          search(make_wave, setup, options);
          ended_ = true;
      }}
{}

double running_estimate::fraction() const
{
    const std::scoped_lock lock{access_};
    return fraction_;
}

std::optional<lens::aberrations> running_estimate::take_best()
{
    const std::scoped_lock lock{access_};
    return std::exchange(best_, std::nullopt);
}

void running_estimate::search(const wave_maker& make_wave, const lens::optics& setup, const estimate_options& options)
{
    const auto progress = [this](double fraction, const lens::optics& current) {
        const std::scoped_lock lock{access_};
        fraction_ = fraction;
        best_ = current.lens;
        return true;
    };
    try {
        const auto wave = make_wave(stopping_);
        if (!wave) return;
        auto stoppable = options;
        stoppable.stop = &stopping_;
        result_ = estimate_aberrations(*wave, setup, stoppable, progress);
    } catch (const std::bad_alloc&) {
        failure_ = "There is not enough memory for this search.";
    } catch (const std::exception& problem) {
        failure_ = problem.what();
    }
}

}  // namespace zentrix::host
