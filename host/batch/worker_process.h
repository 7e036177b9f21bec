#pragma once

#include <memory>
#include <optional>
#include <string>

namespace zentrix::host {

/// A second process of the running program, which gets lines and answers with lines.
class worker_process
{
  public:
    /// Starts the program with the single argument `worker_argument`. What the worker writes to standard error appears
    /// on that of this process.
    /// Throws  std::system_error
    worker_process();
    /// Ends the worker's input and waits until it has ended.
    ~worker_process();
    worker_process(const worker_process&) = delete;
    worker_process& operator=(const worker_process&) = delete;

    /// Sends a line, without its end. Returns false when the worker has ended.
    bool send(const std::string& line);
    /// Waits for a line. Returns nothing when the worker has ended.
    std::optional<std::string> receive();
    /// Waits for the end of the worker: "ended with code 3", "was ended by signal 9".
    std::string how_it_ended();

  private:
    struct connection;
    /// Waits for bytes and appends them to `received_`. Returns false when the worker has ended.
    bool read_more();

    std::unique_ptr<connection> connection_;
    std::string received_;  ///< bytes after the last line
};

inline constexpr char worker_argument[] = "--worker";

/// In a worker: from now on it ends soon after the process that started it, however that ends.
void end_with_parent();

/// Limits the threads of workers that will be started.
void limit_threads_of_workers(int threads);

}  // namespace zentrix::host
