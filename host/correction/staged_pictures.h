#pragma once

#include <functional>
#include <optional>

#include "host/correction/picture_worker.h"

namespace zentrix::host {

/// Pictures that are made in two stages: the first on the user's thread, because the library runs on the engine's main
/// thread only, the second by a picture_worker. Of several requests that come while the worker is busy, only the newest
/// is begun. The worker finishes a quick picture when a newer request comes: else there would be none during a drag.
/// It gives up a slow one.
class staged_pictures : public picture_supply
{
  public:
    void on_ready(std::function<void()> ready) override;
    std::uint64_t request(const picture_request& wanted) override;
    std::optional<rendered_picture> take() override;
    rendered_picture wait_for(const picture_request& wanted) override;
    /// Forgets the waiting request and asks the running work to end soon. Returns at once.
    void give_up();

  protected:
    struct second_stage
    {
        picture_worker::job work;  ///< must not use this object, of which it may see the end
        bool is_slow = false;
        std::function<void()> taken = [] {};  ///< called on the user's thread after `work`, unless it was given up
    };
    /// The first stage. An exception is a picture with its text as failure.
    virtual second_stage begin(const picture_request& wanted) = 0;

  private:
    void collect();
    void proceed();

    std::function<void()> ready_;
    std::uint64_t number_ = 0;
    std::optional<picture_request> waiting_;
    std::uint64_t running_number_ = 0;
    second_stage running_;
    std::optional<rendered_picture> done_;
    picture_worker worker_;  // last, so that it ends first
};

}  // namespace zentrix::host
