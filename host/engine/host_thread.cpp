#include "host/engine/host_thread.h"

#include "host/objects/value.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <system_error>
#include <utility>

namespace zentrix::host {

namespace {

constexpr char forked_during_call[] =
    "This process was forked while a script function ran on another thread, so it cannot use the host: fork when no "
    "call is running, or start processes with \"spawn\" or \"forkserver\".";

}  // namespace

/// A call on the stack of the thread that waits for it.
struct host_thread::waiting_call
{
    const std::function<void()>& work;
    bool is_running = false;
    bool has_ended = false;
    std::atomic<bool> is_given_up = false;
    std::exception_ptr thrown = nullptr;
    std::condition_variable changed = {};
};

/// What the threads share. A forked child leaves its copy alone, since other threads may have locked it, and makes
/// another.
struct host_thread::hand_over
{
    std::mutex mutex;
    std::condition_variable arrived;  ///< for the thread: there is something to do
    std::condition_variable idle;     ///< for before_fork and run_last: no call is running
    std::deque<waiting_call*> queue;
    waiting_call* running = nullptr;
    bool is_finishing = false;
    int pauses = 0;             ///< forks in preparation, during which no call is begun
    bool busy_at_fork = false;  ///< a call was running at the latest of them
    std::string refusal;        ///< not empty: no further calls
    bool is_usable = true;      ///< false in a child forked during a call
    std::thread thread;
    std::atomic<std::thread::id> id;
};

host_thread::host_thread(std::function<void()> started, std::function<void()> ending)
    : started_{std::move(started)}, ending_{std::move(ending)}, shared_{std::make_unique<hand_over>()}
{}

host_thread::~host_thread() { finish(); }

bool host_thread::is_current() const noexcept { return shared_->id == std::this_thread::get_id(); }

bool host_thread::is_given_up() const noexcept { return shared_->running && shared_->running->is_given_up; }

void host_thread::serve(hand_over& shared)
{
    shared.id = std::this_thread::get_id();
    started_();
    std::unique_lock locked{shared.mutex};
    for (;;) {
        shared.arrived.wait(locked,
                            [&] { return shared.pauses == 0 && (!shared.queue.empty() || shared.is_finishing); });
        if (shared.queue.empty()) break;
        waiting_call& call = *shared.queue.front();
        shared.queue.pop_front();
        shared.running = &call;
        call.is_running = true;
        locked.unlock();
        try {
            call.work();
        } catch (...) {
            call.thrown = std::current_exception();
        }
        if (shared_.get() != &shared) return;  // a child forked during this call: nobody waits for it here
        locked.lock();
        shared.running = nullptr;
        call.has_ended = true;
        call.changed.notify_one();  // the lock is held, so the call still exists
        shared.idle.notify_all();
    }
    locked.unlock();
    ending_();
}

/// Requires the lock.
void host_thread::start(hand_over& shared)
{
    if (shared.thread.joinable()) return;
    try {
        shared.thread = std::thread{[this, &shared] { serve(shared); }};
    } catch (const std::system_error& problem) {
        throw script_error{std::string{"The thread of script functions cannot be started: "} + problem.what() + "."};
    }
}

bool host_thread::run(const std::function<void()>& work, const question& ask)
{
    if (is_current()) {
        work();
        return true;
    }
    hand_over& shared = *shared_;
    waiting_call call{work};
    std::unique_lock locked{shared.mutex};
    if (!shared.refusal.empty()) throw script_error{shared.refusal};
    start(shared);
    shared.queue.push_back(&call);
    shared.arrived.notify_one();
    while (!call.changed.wait_for(locked, question_interval, [&] { return call.has_ended; })) {
        if (!ask) continue;
        const auto seen = call.is_running ? progress::running : progress::queued;
        locked.unlock();
        const wish answer = ask(seen);
        locked.lock();
        if (call.has_ended || answer == wish::wait) continue;
        call.is_given_up = true;
        if (!call.is_running) {
            std::erase(shared.queue, &call);
            return false;
        }
    }
    if (call.thrown) std::rethrow_exception(std::exchange(call.thrown, nullptr));
    return true;
}

void host_thread::refuse(const std::string& reason)
{
    const std::lock_guard locked{shared_->mutex};
    if (shared_->refusal.empty()) shared_->refusal = reason;
    if (shared_->running) shared_->running->is_given_up = true;
    for (auto* const call : std::exchange(shared_->queue, {})) {
        call->thrown = std::make_exception_ptr(script_error{shared_->refusal});
        call->has_ended = true;
        call->changed.notify_one();
    }
}

bool host_thread::run_last(const std::function<void()>& work, std::chrono::milliseconds longest_wait)
{
    hand_over& shared = *shared_;
    std::unique_lock locked{shared.mutex};
    if (!shared.is_usable) return false;
    start(shared);
    if (!shared.idle.wait_for(locked, longest_wait, [&] { return !shared.running; })) return false;
    waiting_call call{work};
    shared.queue.push_back(&call);
    shared.arrived.notify_one();
    call.changed.wait(locked, [&] { return call.has_ended; });
    if (call.thrown) std::rethrow_exception(std::exchange(call.thrown, nullptr));
    return true;
}

void host_thread::finish()
{
    {
        const std::lock_guard locked{shared_->mutex};
        shared_->is_finishing = true;
        shared_->arrived.notify_one();
    }
    if (shared_->thread.joinable()) shared_->thread.join();
    shared_->thread = {};
    shared_->is_finishing = false;
    shared_->id = std::thread::id{};
}

void host_thread::before_fork(std::chrono::milliseconds longest_wait)
{
    hand_over& shared = *shared_;
    std::unique_lock locked{shared.mutex};
    ++shared.pauses;
    if (is_current()) return;
    shared.busy_at_fork = !shared.idle.wait_for(locked, longest_wait, [&] { return !shared.running; });
}

void host_thread::after_fork_in_parent()
{
    const std::lock_guard locked{shared_->mutex};
    --shared_->pauses;
    shared_->arrived.notify_one();
}

void host_thread::after_fork_in_child()
{
    const hand_over& before = *shared_;
    auto fresh = std::make_unique<hand_over>();
    fresh->is_usable = before.is_usable && !before.busy_at_fork && !is_current();
    fresh->refusal = fresh->is_usable ? before.refusal : forked_during_call;
    fresh->id = is_current() ? std::this_thread::get_id() : std::thread::id{};
    (void)shared_.release();  // its mutex may be locked, and its thread does not exist here
    shared_ = std::move(fresh);
}

}  // namespace zentrix::host
