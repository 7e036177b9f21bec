#include "host/batch/file_runner.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <mutex>
#include <new>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "host/batch/worker_process.h"
#include "host/parallel/processors.h"

namespace zentrix::host {

namespace {

/// Sends what is written to std::cerr to a text instead.
class captured_errors
{
  public:
    captured_errors() : former_{std::cerr.rdbuf(text_.rdbuf())} {}
    ~captured_errors() { std::cerr.rdbuf(former_); }
    captured_errors(const captured_errors&) = delete;
    captured_errors& operator=(const captured_errors&) = delete;

    std::string text() const { return text_.str(); }

  private:
    std::ostringstream text_;
    std::streambuf* former_;
};

file_outcome failure(const std::string& reason)
{
    file_outcome failed;
    failed.state = file_state::failed;
    failed.text = reason;
    return failed;
}

/// A worker that is started when it is needed, and again after it ended.
class replaced_worker
{
  public:
    explicit replaced_worker(std::string first_line) : first_line_{std::move(first_line)} {}

    file_outcome run(const file_task& task)
    {
        if (!worker_) {
            worker_.emplace();
            worker_->send(first_line_);
        }
        std::optional<std::string> answer;
        if (worker_->send(line_of(task))) answer = worker_->receive();
        if (answer) return outcome_of(*answer);
        const std::string end = worker_->how_it_ended();
        worker_.reset();
        return failure(task.input + ": the process that was working on it " + end);
    }

  private:
    std::string first_line_;
    std::optional<worker_process> worker_;
};

/// Tasks that several threads take and answer.
class shared_tasks
{
  public:
    shared_tasks(const std::vector<file_task>& tasks, const file_listener& listen) : tasks_{tasks}, listen_{listen} {}

    void work_with(replaced_worker worker)
    try {
        while (const file_task* task = next()) {
            const file_outcome outcome = worker.run(*task);
            const std::lock_guard guard{mutex_};
            listen_(*task, outcome);
        }
    } catch (...) {
        const std::lock_guard guard{mutex_};
        problem_ = std::current_exception();
        next_ = tasks_.size();
    }

    void rethrow_problem() const
    {
        if (problem_) std::rethrow_exception(problem_);
    }

  private:
    const file_task* next()
    {
        const std::lock_guard guard{mutex_};
        return next_ < tasks_.size() ? &tasks_[next_++] : nullptr;
    }

    const std::vector<file_task>& tasks_;
    const file_listener& listen_;
    std::mutex mutex_;
    std::size_t next_ = 0;
    std::exception_ptr problem_;
};

std::optional<std::string> read_line()
{
    std::string line;
    if (!std::getline(std::cin, line)) return std::nullopt;
    return line;
}

}  // namespace

file_outcome attempt(const file_process& process, const file_task& task)
{
    const captured_errors notes;
    file_outcome outcome;
    try {
        outcome = process(task);
    } catch (const std::bad_alloc&) {
        outcome = failure(task.input + ": there is not enough memory for images of this size");
    } catch (const std::exception& problem) {
        outcome = failure(problem.what());
    }
    outcome.notes += notes.text();
    return outcome;
}

void process_here(const std::vector<file_task>& tasks, const file_process& process, const file_listener& listen)
{
    for (const file_task& task : tasks) listen(task, attempt(process, task));
}

void process_in_workers(const std::vector<file_task>& tasks, int workers, const std::vector<std::string>& words,
                        const file_listener& listen)
{
    const std::string first_line = nlohmann::ordered_json(words).dump();
    const auto count = std::min(workers, static_cast<int>(tasks.size()));
    limit_threads_of_workers(std::max(1, static_cast<int>(processors()) / std::max(1, count)));
    shared_tasks shared{tasks, listen};
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < count; ++i) threads.emplace_back([&] { shared.work_with(replaced_worker{first_line}); });
    }
    shared.rethrow_problem();
}

std::vector<std::string> read_words_of_worker()
try {
    const auto line = read_line();
    if (!line) std::exit(EXIT_FAILURE);
    return nlohmann::ordered_json::parse(*line);
} catch (const std::exception&) {
    throw std::runtime_error{std::string{worker_argument} + " is for processes that this program starts by itself"};
}

void serve_tasks(const file_process& process)
{
    while (const auto line = read_line()) std::cout << line_of(attempt(process, task_of(*line))) << std::endl;
}

}  // namespace zentrix::host
