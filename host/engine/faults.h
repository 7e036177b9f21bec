#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zentrix::host {

/// Requests of the library that can be made to fail.
enum class fault_point
{
    call,               ///< calls of host functions and methods; fail with the text of `fault`
    find_function,      ///< look-ups of host functions; find none
    find_method,        ///< look-ups of methods; find none
    make_string,        ///< creation of strings; fails as if memory ran out
    register_function,  ///< registrations of script functions and floating windows; fail with the text of `fault`
};
inline constexpr std::size_t fault_points = 5;

/// A planned failure.
struct fault
{
    fault_point point = fault_point::call;
    std::uint64_t number = 0;    ///< which matching request fails, counted from 1; 0: every one
    std::string prototype = {};  ///< exact prototype text (make_string: the string) to match; empty: any
    std::string text = "This host call was made to fail.";
};

/// Counts the requests of the library and makes the planned one fail. To walk through all failures of a function:
///     run(); const auto calls = engine.faults().count(fault_point::call);
///     for (k = 1..calls) { engine.faults().plan({fault_point::call, k}); run(); ... }
///
/// A call that is made to fail is not carried out. Releasing calls ("UnlockMemory", "UnregisterCustomTool") are carried
/// out before they fail, because the caller cannot recover from a missing release.
class fault_plan
{
  public:
    /// Replaces the plan and resets the counts.
    void plan(fault planned);
    /// Removes the plan and resets the counts.
    void clear();
    /// Requests since the last plan or clear.
    std::uint64_t count(fault_point point) const { return counts_[static_cast<std::size_t>(point)]; }
    /// Requests made to fail since the last plan or clear.
    std::uint64_t fired() const { return fired_; }

    /// Counts a request. True when it has to fail.
    bool should_fail(fault_point point, std::string_view prototype);
    /// The text of the planned failure. Requires that should_fail returned true.
    const std::string& text() const { return planned_->text; }

  private:
    std::optional<fault> planned_;
    std::array<std::uint64_t, fault_points> counts_{};
    std::uint64_t matching_ = 0;
    std::uint64_t fired_ = 0;
};

}  // namespace zentrix::host
