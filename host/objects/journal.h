#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace zentrix::host {

/// An error reported to the host's error manager.
struct error_record
{
    std::uint32_t code;
    std::string text;
};

/// A trace counter: the number of reports and the sum of their ticks.
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

/// A message box: `kind` is the second argument of ShowAlert, or -1 for OkDialog.
struct dialog_record
{
    std::string text;
    std::int64_t kind;
};

/// Callbacks, invoked as each record is added. Any of them may be empty. `error` may be called on any thread.
struct listeners
{
    std::function<void(const error_record&)> error;
    std::function<void(const output_record&)> output;
    std::function<void(const dialog_record&)> dialog;
    /// A tag written by the library, with its value as text.
    std::function<void(std::string_view path, const std::string& value)> tag_write;
};

/// The records of an engine. Thread-safe.
class journal
{
  public:
    listeners listening;  ///< set before the library is loaded

    void add_error(std::uint32_t code, std::string text);
    void add_output(output_record line);
    void add_dialog(dialog_record shown);
    void add_trace(const std::string& name, std::int64_t ticks);
    /// Records a breach of the contract by the library: "image #12 is used after its last release.", ...
    void add_violation(std::string text);

    std::vector<error_record> errors() const;
    std::vector<output_record> output() const;
    std::vector<dialog_record> dialogs() const;
    std::map<std::string, trace_counter> traces() const;
    std::vector<std::string> violations() const;
    /// Removes all records. The listeners stay.
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
