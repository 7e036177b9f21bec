#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace zentrix::host {

/// A thread that runs calls for other threads: one at a time, in the order in which they were handed over. It is
/// started by the first call and ends with `finish`. For programs whose threads share an engine: the engine is made,
/// used and closed in such calls, so that this thread is its main thread.
class host_thread
{
  public:
    /// How far a call has come.
    enum class progress
    {
        queued,
        running,
    };
    /// The answer of a waiting thread.
    enum class wish
    {
        wait,
        give_up,
    };
    using question = std::function<wish(progress)>;

    static constexpr std::chrono::milliseconds question_interval{50};

    /// The functions are called on the thread, before its first and after its last call. They must not throw.
    host_thread(std::function<void()> started, std::function<void()> ending);
    /// As `finish`.
    ~host_thread();
    host_thread(const host_thread&) = delete;
    host_thread& operator=(const host_thread&) = delete;

    bool is_current() const noexcept;

    /// Runs `work` on the thread and returns when it has ended. On the thread itself, that is inside another call, it
    /// runs at once. `ask` is called on the waiting thread each `question_interval`, without a lock. If it gives up, a
    /// queued call is withdrawn; for a running one `is_given_up` becomes true, and the wait goes on.
    /// Returns  false if the call was withdrawn
    /// Throws   what `work` throws; script_error with the reason after `refuse`, in a child process that was forked
    ///          during a call, and if the thread cannot be started
    bool run(const std::function<void()>& work, const question& ask = {});

    /// Whether the running call was given up. For the thread itself.
    bool is_given_up() const noexcept;

    /// Refuses queued and later calls, and gives up the running one. Only run_last is still possible.
    /// reason   the text of their script_error
    void refuse(const std::string& reason);

    /// Runs `work` after `refuse`, once the running call has ended.
    /// Returns  false without running it if that takes longer than `longest_wait`
    bool run_last(const std::function<void()>& work, std::chrono::milliseconds longest_wait);

    /// Ends the thread after its queued calls; no other may be handed over meanwhile. Not for the thread itself.
    void finish();

    /// To be called around a fork, which copies only the forking thread. The first holds back further calls and waits
    /// for the running one, at most `longest_wait`. In the child the next call starts another thread, or fails if a
    /// call was still running; calls that were queued do not exist there.
    void before_fork(std::chrono::milliseconds longest_wait);
    void after_fork_in_parent();
    void after_fork_in_child();

  private:
    struct waiting_call;
    struct hand_over;

    void start(hand_over& shared);
    void serve(hand_over& shared);

    std::function<void()> started_;
    std::function<void()> ending_;
    std::unique_ptr<hand_over> shared_;
};

}  // namespace zentrix::host
