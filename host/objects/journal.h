#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace zentrix::host {

/// An error reported to the host's error manager.
struct error_record
{
    std::uint32_t code;
    std::string text;

    std::size_t bytes() const { return sizeof *this + text.size(); }
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

    std::size_t bytes() const { return sizeof *this + module.size() + text.size(); }
};

/// A message box: `kind` is the second argument of ShowAlert, or -1 for OkDialog.
struct dialog_record
{
    std::string text;
    std::int64_t kind;

    std::size_t bytes() const { return sizeof *this + text.size(); }
};

/// Callbacks, invoked as each record is added. Any of them may be empty. `error` may be called on any thread.
struct listeners
{
    std::function<void(const error_record&)> error;
    std::function<void(const output_record&)> output;
    std::function<void(const dialog_record&)> dialog;
};

/// The records of one kind, up to a limit of memory.
/// Record   has a function bytes(): its size with its texts
template <class Record>
class bounded_records
{
  public:
    static constexpr std::size_t most_bytes = std::size_t{1} << 20;

    /// Adds a record and removes the oldest ones while all together exceed most_bytes. The newest record always stays.
    void add(Record added)
    {
        bytes_ += added.bytes();
        records_.push_back(std::move(added));
        for (; bytes_ > most_bytes && records_.size() > 1; records_.pop_front()) bytes_ -= records_.front().bytes();
    }
    void clear() { *this = {}; }
    std::vector<Record> copy() const { return {records_.begin(), records_.end()}; }

  private:
    std::deque<Record> records_;
    std::size_t bytes_ = 0;
};

/// The records of an engine. Thread-safe. Memory is limited: of errors, output and dialogs the newest are kept, 1 MiB
/// of each; of violations the first `most_violations`, since the first ones show the cause, and the number of all
/// others. A caller that needs every record uses the listeners.
class journal
{
  public:
    static constexpr std::size_t most_violations = 1000;

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
    /// The first violations; when there are more, a last line gives their number.
    std::vector<std::string> violations() const;
    /// Removes all records. The listeners stay.
    void clear();

  private:
    mutable std::mutex mutex_;
    bounded_records<error_record> errors_;
    bounded_records<output_record> output_;
    bounded_records<dialog_record> dialogs_;
    std::map<std::string, trace_counter> traces_;
    std::vector<std::string> violations_;
    std::uint64_t further_violations_ = 0;
};

}  // namespace zentrix::host
