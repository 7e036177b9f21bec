#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zentrix::host {

/// The requests of the library that can be made to fail.
enum class fault_point
{
    call,               ///< calls of host functions and methods; fails with the text of `fault`
    find_function,      ///< look-ups by prototype; finds none
    find_method,        ///< look-ups of methods; finds none
    make_string,        ///< out of memory
    register_function,  ///< registrations of script functions and floating windows; fails with the text of `fault`
};
inline constexpr std::size_t fault_points = 5;

/// A failure to come. `prototype` narrows it to requests for that exact prototype text (for make_string: that string);
/// `number` says which of the matching requests from now on fails, the first being 1; 0 means every one.
struct fault
{
    fault_point point = fault_point::call;
    std::uint64_t number = 0;
    std::string prototype = {};
    std::string text = "This host call was made to fail.";
};

/// Counts the library's requests and makes the planned one fail. Walking all failures of a script function:
///     run(); const auto calls = engine.faults().count(fault_point::call);
///     for (k = 1..calls) { engine.faults().plan({fault_point::call, k}); run(); ... }
///
/// A failing call is not carried out, except that what gives something back ("UnlockMemory", "UnregisterCustomTool")
/// does so before it fails: nobody could make up for that.
class fault_plan
{
  public:
    /// Plans one failure in place of the former plan, and counts from zero.
    void plan(fault planned);
    /// No failure any more; counts from zero.
    void clear();
    /// Requests since the last plan or clear.
    std::uint64_t count(fault_point point) const { return counts_[static_cast<std::size_t>(point)]; }
    /// Failures since then.
    std::uint64_t fired() const { return fired_; }

    /// Counts a request; true when it has to fail.
    bool strikes(fault_point point, std::string_view prototype);
    const std::string& text() const { return planned_->text; }

  private:
    std::optional<fault> planned_;
    std::array<std::uint64_t, fault_points> counts_{};
    std::uint64_t matching_ = 0;
    std::uint64_t fired_ = 0;
};

}  // namespace zentrix::host
