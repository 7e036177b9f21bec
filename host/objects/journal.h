#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace zentrix::host {

/// What the host's error manager was told.
struct error_record
{
    std::uint32_t code;
    std::string text;
};

/// A trace counter: how often it was reported to and the sum of ticks.
struct trace_counter
{
    std::uint64_t reports = 0;
    std::int64_t ticks = 0;
};

/// A write to the output window.
struct output_record
{
    std::string module;
    std::uint32_t type;
    std::string text;
};

/// A message box: `kind` is ShowAlert's second argument, or nothing for OkDialog (-1).
struct dialog_record
{
    std::string text;
    std::int64_t kind;
};

/// Who wants to see these as they happen; any of them may be empty. `error` may be called from any thread.
struct listeners
{
    std::function<void(const error_record&)> error;
    std::function<void(const output_record&)> output;
    std::function<void(const dialog_record&)> dialog;
    std::function<void(std::string_view path, const std::string& value)> tag_write;  ///< by the library, value as text
};

/// Everything that an engine writes down while the library runs. Any thread may write and read.
class journal
{
  public:
    listeners listening;  ///< set before the library is loaded

    void add_error(std::uint32_t code, std::string text);
    void add_output(output_record line);
    void add_dialog(dialog_record shown);
    void add_trace(const std::string& name, std::int64_t ticks);
    /// A breach of the contract by the library: "image #12 is used after its last release", ...
    void add_violation(std::string text);

    std::vector<error_record> errors() const;
    std::vector<output_record> output() const;
    std::vector<dialog_record> dialogs() const;
    std::map<std::string, trace_counter> traces() const;
    std::vector<std::string> violations() const;
    /// Forgets all records; the listeners stay.
    void clear();

  private:
    mutable std::mutex mutex_;
    std::vector<error_record> errors_;
    std::vector<output_record> output_;
    std::vector<dialog_record> dialogs_;
    std::map<std::string, trace_counter> traces_;
    std::vector<std::string> violations_;
};

}  // namespace zentrix::host
