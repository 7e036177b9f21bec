#include "host/correction/picture_worker.h"

#include <exception>
#include <new>
#include <utility>

namespace zentrix::host {

rendered_picture failed_picture()
{
    rendered_picture nothing;
    try {
        throw;
    } catch (const std::bad_alloc&) {
        nothing.failure = "There is not enough memory for this picture.";
    } catch (const std::exception& problem) {
        nothing.failure = problem.what();
        nothing.is_known = dynamic_cast<const known_failure*>(&problem) != nullptr;
    }
    return nothing;
}

picture_worker::picture_worker() : thread_{[this] { serve(); }} {}

picture_worker::~picture_worker()
{
    const std::lock_guard guard{access_};
    given_up_ = true;
    ending_ = true;
    changed_.notify_all();
}

void picture_worker::on_finished(std::function<void()> finished)
{
    const std::lock_guard calling{calling_};
    finished_ = std::move(finished);
}

bool picture_worker::busy() const
{
    const std::lock_guard guard{access_};
    return running_ || finished_picture_;
}

void picture_worker::start(job work)
{
    const std::lock_guard guard{access_};
    waiting_ = std::move(work);
    given_up_ = false;
    running_ = true;
    changed_.notify_all();
}

void picture_worker::give_up() { given_up_ = true; }

std::optional<rendered_picture> picture_worker::take()
{
    const std::lock_guard guard{access_};
    return std::exchange(finished_picture_, std::nullopt);
}

void picture_worker::wait()
{
    std::unique_lock locked{access_};
    changed_.wait(locked, [&] { return !running_; });
}

void picture_worker::serve()
{
    std::unique_lock locked{access_};
    for (;;) {
        changed_.wait(locked, [&] { return ending_ || waiting_; });
        if (ending_) return;
        job work = std::exchange(waiting_, nullptr);
        locked.unlock();
        rendered_picture result;
        try {
            result = work(given_up_);
        } catch (...) {
            result = failed_picture();
        }
        work = nullptr;  // with its images, before the next job needs memory
        locked.lock();
        if (!given_up_) finished_picture_ = std::move(result);
        running_ = false;
        changed_.notify_all();
        locked.unlock();
        {
            const std::lock_guard calling{calling_};
            if (finished_) finished_();
        }
        locked.lock();
    }
}

}  // namespace zentrix::host
