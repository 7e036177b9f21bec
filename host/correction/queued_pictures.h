#pragma once

#include <functional>
#include <optional>
#include <string>

#include "host/correction/picture_worker.h"

namespace zentrix::host {

/// Pictures that a picture_worker makes, one after the other. Of several requests that come while it is busy, only the
/// newest is begun. The worker finishes a quick picture when a newer request comes: else there would be none during a
/// drag. It gives up a slow one.
class queued_pictures : public picture_supply
{
  public:
    void on_ready(std::function<void()> ready) override;
    std::uint64_t request(const picture_request& wanted) override;
    std::optional<rendered_picture> take() override;
    rendered_picture wait_for(const picture_request& wanted) override;
    /// Forgets the waiting request and asks the running work to end soon. Returns at once.
    void give_up();
    /// The same, but returns when the work has ended.
    void give_up_and_wait();

  protected:
    struct task
    {
        picture_worker::job work;  ///< must not use this object, of which it may see the end
        bool is_slow = false;
        /// One of these is called on the user's thread after `work`, unless it was given up.
        std::function<void()> taken = [] {};
        std::function<void(const std::string& failure)> failed = [](const std::string&) {};
    };
    /// What is to be done for a picture of the present image. On the user's thread while the worker rests; must be
    /// quick. An exception is a picture with its text as failure.
    virtual task begin(const picture_request& wanted) = 0;

  private:
    void collect();
    void proceed();

    std::function<void()> ready_;
    std::uint64_t number_ = 0;
    std::optional<picture_request> waiting_;
    std::uint64_t running_number_ = 0;
    task running_;
    std::optional<rendered_picture> done_;
    picture_worker worker_;  // last, so that it ends first
};

}  // namespace zentrix::host
