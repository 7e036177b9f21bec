#include "host/correction/queued_pictures.h"

#include <utility>

namespace zentrix::host {

void queued_pictures::on_ready(std::function<void()> ready)
{
    worker_.on_finished(ready);
    ready_ = std::move(ready);
}

std::uint64_t queued_pictures::request(const picture_request& wanted)
{
    waiting_ = wanted;
    ++number_;
    if (running_.is_slow) worker_.give_up();
    collect();
    proceed();
    return number_;
}

std::optional<rendered_picture> queued_pictures::take()
{
    collect();
    proceed();
    return std::exchange(done_, std::nullopt);
}

rendered_picture queued_pictures::wait_for(const picture_request& wanted)
{
    const auto number = request(wanted);
    for (;;) {
        worker_.wait();
        if (auto picture = take(); picture && picture->number == number) return std::move(*picture);
    }
}

void queued_pictures::give_up()
{
    waiting_ = std::nullopt;
    worker_.give_up();
}

void queued_pictures::give_up_and_wait()
{
    give_up();
    worker_.wait();
}

void queued_pictures::collect()
{
    auto picture = worker_.take();
    if (!picture) return;
    if (picture->failure.empty())
        running_.taken();
    else
        running_.failed(picture->failure);
    picture->number = running_number_;
    done_ = std::move(picture);
}

void queued_pictures::proceed()
{
    if (!waiting_ || worker_.busy()) return;
    const picture_request wanted = *std::exchange(waiting_, std::nullopt);
    running_ = {};
    running_number_ = number_;
    try {
        running_ = begin(wanted);
        worker_.start(std::exchange(running_.work, nullptr));
    } catch (...) {
        done_ = failed_picture();
        done_->number = number_;
        if (ready_) ready_();
    }
}

}  // namespace zentrix::host
