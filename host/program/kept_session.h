#pragma once

#include <memory>

#include "host/program/session.h"
#include "host/program/step_times.h"

namespace zentrix::program {

/// The session of a process: it is started for the first file and stays for the others.
class kept_session
{
  public:
    /// `options` must outlive this object.
    explicit kept_session(const global_options& options) : options_{options} {}

    /// The time that the start takes is added to `times`.
    host::engine& engine(step_times& times)
    {
        if (!session_) session_ = times.measure("load", [&] { return std::make_unique<session>(options_); });
        return session_->engine();
    }

  private:
    const global_options& options_;
    std::unique_ptr<session> session_;
};

}  // namespace zentrix::program
