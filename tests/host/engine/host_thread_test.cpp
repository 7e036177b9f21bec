#include "host/engine/host_thread.h"

#include "host/objects/value.h"

#include <gtest/gtest.h>

#include <array>
#include <future>
#include <mutex>
#include <utility>
#include <vector>

namespace zentrix::host {
namespace {

using namespace std::chrono_literals;

/// Occupies the thread until `open` is called or the call is given up.
class long_call
{
  public:
    explicit long_call(host_thread& thread, host_thread::question ask = {})
        : ended_{std::async(std::launch::async, [this, &thread, ask = std::move(ask)] {
              return thread.run(
                  [&] {
                      begun_.set_value();
                      while (!opened_ && !thread.is_given_up()) std::this_thread::sleep_for(1ms);
                      if (thread.is_given_up()) throw script_error{"stopped"};
                  },
                  ask);
          })}
    {
        begun_.get_future().wait();
    }
    ~long_call() { open(); }

    void open() { opened_ = true; }
    bool result() { return ended_.get(); }

  private:
    std::promise<void> begun_;
    std::atomic<bool> opened_ = false;
    std::future<bool> ended_;
};

host_thread::wish give_up(host_thread::progress) { return host_thread::wish::give_up; }

TEST(host_thread, runs_calls_of_many_threads_one_at_a_time)
{
    int hooks = 0, calls = 0, running = 0, refused = 0;
    std::vector<int> latest(16, -1);
    {
        host_thread thread{[&] { ++hooks; }, [&] { hooks += 10; }};
        std::vector<std::jthread> callers;
        std::mutex counting;
        for (int caller = 0; caller < 16; ++caller)
            callers.emplace_back([&, caller] {
                for (int call = 0; call < 200; ++call) try {
                        thread.run([&] {
                            EXPECT_TRUE(thread.is_current());
                            EXPECT_EQ(++running, 1);
                            EXPECT_EQ(std::exchange(latest[caller], call), call - 1);
                            thread.run([&] { ++calls; });  // inside a call it runs at once
                            --running;
                            if (call % 7 == 0) throw script_error{"refused"};
                        });
                    } catch (const script_error&) {
                        const std::lock_guard locked{counting};
                        ++refused;
                    }
            });
        callers.clear();
        EXPECT_FALSE(thread.is_current());
    }
    EXPECT_EQ(calls, 16 * 200);
    EXPECT_EQ(refused, 16 * 29);
    EXPECT_EQ(hooks, 11);
}

TEST(host_thread, runs_calls_in_the_order_in_which_they_were_handed_over)
{
    host_thread thread{[] {}, [] {}};
    std::vector<int> order;
    std::array<std::promise<void>, 3> queued;
    std::vector<std::future<bool>> calls;
    {
        const long_call blocking{thread};
        for (int call = 0; call < 3; ++call) {
            calls.push_back(std::async(std::launch::async, [&, call] {
                bool seen = false;
                return thread.run([&order, call] { order.push_back(call); },
                                  [&](host_thread::progress) {
                                      if (!std::exchange(seen, true)) queued[call].set_value();
                                      return host_thread::wish::wait;
                                  });
            }));
            queued[call].get_future().wait();
        }
    }
    for (auto& call : calls) EXPECT_TRUE(call.get());
    EXPECT_EQ(order, (std::vector{0, 1, 2}));
}

TEST(host_thread, withdraws_a_queued_call_and_stops_a_running_one)
{
    host_thread thread{[] {}, [] {}};
    long_call blocking{thread};
    EXPECT_FALSE(thread.run([] { FAIL(); }, give_up));
    blocking.open();
    EXPECT_TRUE(blocking.result());
    long_call given_up{thread, give_up};
    EXPECT_THROW(given_up.result(), script_error);
    bool asked = true;
    thread.run([&] { asked = thread.is_given_up(); });
    EXPECT_FALSE(asked) << "the wish concerns one call";
}

TEST(host_thread, refuses_all_but_the_last_call)
{
    host_thread thread{[] {}, [] {}};
    long_call running{thread};
    const auto queued = [&] { return std::async(std::launch::async, [&] { thread.run([] { FAIL(); }); }); };
    auto earlier = queued();
    EXPECT_EQ(earlier.wait_for(20ms), std::future_status::timeout);
    thread.refuse("the end");
    EXPECT_THROW(running.result(), script_error);
    EXPECT_THROW(earlier.get(), script_error);
    EXPECT_THROW(queued().get(), script_error);
    bool ran = false;
    EXPECT_TRUE(thread.run_last([&] { ran = true; }, 1s));
    EXPECT_TRUE(ran);
}

TEST(host_thread, holds_calls_back_during_a_fork)
{
    host_thread thread{[] {}, [] {}};
    thread.run([] {});
    thread.before_fork(0ms);
    std::atomic<bool> ran = false;
    auto held_back = std::async(std::launch::async, [&] { thread.run([&] { ran = true; }); });
    EXPECT_EQ(held_back.wait_for(20ms), std::future_status::timeout);
    EXPECT_FALSE(ran);
    thread.after_fork_in_parent();
    held_back.get();
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace zentrix::host
