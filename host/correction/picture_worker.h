#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "host/correction/picture_supply.h"
#include "host/objects/value.h"

namespace zentrix::host {

/// A picture whose failure is the text of the exception that is being handled. That of std::bad_alloc is "There is not
/// enough memory for this picture.".
rendered_picture failed_picture();

/// A failure that was reported to the user before.
struct known_failure : script_error
{
    using script_error::script_error;
};

/// A thread that renders one picture at a time. All functions are for the thread that made the object.
class picture_worker
{
  public:
    /// Renders a picture; looks at `given_up` now and then and returns anything once it is true.
    using job = std::function<rendered_picture(const std::atomic<bool>& given_up)>;

    picture_worker();
    /// Gives up the running job and waits until it has returned.
    ~picture_worker();
    picture_worker(const picture_worker&) = delete;
    picture_worker& operator=(const picture_worker&) = delete;

    /// Sets what is called on the thread after each job.
    void on_finished(std::function<void()> finished);

    /// Whether a job runs, or its picture has not been taken.
    bool busy() const;
    /// Starts a job. Not while `busy`.
    void start(job work);
    /// Asks the running job to return early; its picture is dropped.
    void give_up();
    /// The picture of the last job, once; nothing if it was given up. An exception of the job is a failed_picture.
    std::optional<rendered_picture> take();
    /// Returns when no job runs.
    void wait();

  private:
    void serve();

    mutable std::mutex access_;
    std::condition_variable changed_;
    job waiting_;
    std::optional<rendered_picture> finished_picture_;
    std::function<void()> finished_;
    std::atomic<bool> given_up_ = false;
    bool running_ = false, ending_ = false;
    std::mutex calling_;   ///< held while `finished_` runs
    std::jthread thread_;  // last, so that it ends before the other members
};

}  // namespace zentrix::host
