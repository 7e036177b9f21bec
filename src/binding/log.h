#pragma once

#include <cstdint>
#include <exception>
#include <sstream>

namespace qorv::binding {

/// How much a line in the host's output window matters; the number is the window's output type.
enum class level : std::uint32_t
{
    information = 0,
    warning = 1,
    error = 2,
};

/// One line for the host's output window: collects what is streamed into it and writes it, ended, when it dies. Never
/// throws: a line that cannot be written is lost.
///     log_line{level::warning} << "An image could not be unlocked: " << error.what();
class log_line
{
  public:
    explicit log_line(level importance) : level_{importance} {}
    log_line(const log_line&) = delete;
    log_line& operator=(const log_line&) = delete;
    ~log_line();

    template <class T>
    log_line& operator<<(const T& part)
    {
        text_ << part;
        return *this;
    }

  private:
    level level_;
    std::ostringstream text_;
};

/// Notes an error that `what` ended with and that nobody can be told by a throw.
void log_lost_error(const char* what, const std::exception& error) noexcept;

}  // namespace qorv::binding
