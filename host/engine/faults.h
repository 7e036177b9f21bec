#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace zentrix::host {

/// Requests of the library that can be made to fail.
enum class fault_point
{
    call,               ///< calls of host functions and methods; fail with the text of `fault`
    find_function,      ///< look-ups of host functions; find none
    find_method,        ///< look-ups of methods; find none
    make_string,        ///< creation of strings; fails as if memory ran out
    register_function,  ///< registrations of script functions and floating windows; fail with the text of `fault`
    any,                ///< all of these, counted in one sequence
};
inline constexpr std::size_t fault_points = 6;

/// A planned failure.
struct fault
{
    fault_point point = fault_point::call;
    std::uint64_t number = 0;    ///< which matching request fails, counted from 1; 0: every one
    std::string prototype = {};  ///< exact prototype text (make_string: the string) to match; empty: any
    std::string text = "This host call was made to fail.";
};

/// A request that was made to fail: what it asked for, and the prototype text or, for make_string, the string.
struct failed_request
{
    fault_point point;
    std::string prototype;
};

/// Counts the requests of the library and makes the planned ones fail. To walk through all failures of a function:
///     run(); const auto requests = engine.faults().count(fault_point::any);
///     for (k = 1..requests) { engine.faults().plan({fault_point::any, k}); run(); ... }
///
/// A call that is made to fail is not carried out. Releasing calls ("UnlockMemory", "UnregisterCustomTool") are carried
/// out before they fail, because the caller cannot recover from a missing release. Any thread.
class fault_plan
{
  public:
    /// Replaces the plan and resets the counts.
    void plan(fault planned);
    void plan(std::vector<fault> planned);
    /// Removes the plan and resets the counts.
    void clear();
    /// Requests since the last plan or clear.
    std::uint64_t count(fault_point point) const;
    /// Requests made to fail since the last plan or clear.
    std::uint64_t fired() const { return failed().size(); }
    std::vector<failed_request> failed() const;

    /// Counts a request. True when it has to fail.
    bool should_fail(fault_point point, std::string_view prototype);
    /// The text of the last planned failure. Requires that should_fail returned true.
    std::string text() const;

  private:
    struct planned_fault
    {
        fault chosen;
        std::uint64_t matching = 0;  ///< matching requests so far
    };
    mutable std::mutex access_;
    std::vector<planned_fault> planned_;
    std::array<std::uint64_t, fault_points> counts_{};
    std::vector<failed_request> failed_;
    std::string text_;
};

}  // namespace zentrix::host
