#pragma once

#include <set>

#include "tests/faults/allocations.h"
#include "tests/faults/typical_calls.h"

namespace faults {

/// A typical call that is made to fail again and again in one host. After each failure it checks the text, locks,
/// references, breaches of the contract, the report of the time, outputs, pixels and tags, and that the same call
/// succeeds afterwards with the same result.
class walked_call
{
  public:
    /// Makes the call twice. The second, on a host where all functions are looked up, gives the result and the number
    /// of requests.
    walked_call(script_host& script, const typical_call& walked);

    std::string prototype() const;
    std::uint64_t requests() const { return requests_; }

    /// Makes the call fail by these requests. Returns the number of requests that it made.
    std::uint64_t expect_failure(const std::vector<fault>& planned);
    /// Makes the call while allocations of the library fail. A call that succeeds all the same has its usual result.
    void expect_failing_allocation(allocation_plan plan);
    /// Makes the call while a function of the host misbehaves. Returns the text of the failure, or an empty one: a call
    /// that succeeds may have another result, but holds nothing.
    /// start, stop   begin and end that; stop returns the prototype of the function
    std::string expect_unharmed(const std::function<void()>& start, const std::function<std::string()>& stop);

  private:
    /// The pixels of the images after a failure.
    enum class pixels
    {
        as_before,
        as_before_or_in_result,  ///< all as before or all as after a success
    };
    struct state
    {
        std::vector<script_value> outputs;
        std::string contents;
        std::vector<std::uint64_t> pixels;  ///< of the images, as hashes
        std::multiset<std::string> held;
        std::uint64_t reports;
    };
    state state_of(const arguments& args) const;
    void expect_unchanged(const arguments& args, const std::vector<image_ref>& images, const state& before,
                          std::uint64_t reports, pixels allowed);
    void expect_success();
    bool is_expected(const std::string& text) const;
    std::multiset<std::string> held() const;
    std::uint64_t trace_reports() const;
    /// Calls with a copy of the arguments. Returns the contents of result and arguments.
    std::string result_of_a_call();

    script_host& script_;
    engine& host_;
    const typical_call& walked_;
    std::set<std::string> host_functions_;  ///< one reference to each, as reports describe it
    std::uint64_t requests_ = 0;
    std::uint64_t reports_of_a_call_ = 0;
    std::string result_;
    std::vector<std::uint64_t> resulting_pixels_;
};

/// The text with which a call fails if the library gets no memory.
inline constexpr char no_memory[] = "There is not enough memory.";

}  // namespace faults
