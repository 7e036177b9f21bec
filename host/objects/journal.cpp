#include "host/objects/journal.h"

#include <utility>

namespace zentrix::host {

// Listeners run without the lock, since they may read the records.

void journal::add_error(std::uint32_t code, std::string text)
{
    const error_record added{code, std::move(text)};
    {
        std::lock_guard guard{mutex_};
        errors_.add(added);
    }
    if (listening.error) listening.error(added);
}

void journal::add_output(output_record line)
{
    {
        std::lock_guard guard{mutex_};
        output_.add(line);
    }
    if (listening.output) listening.output(line);
}

void journal::add_dialog(dialog_record shown)
{
    {
        std::lock_guard guard{mutex_};
        dialogs_.add(shown);
    }
    if (listening.dialog) listening.dialog(shown);
}

void journal::add_trace(const std::string& name, std::int64_t ticks)
{
    std::lock_guard guard{mutex_};
    auto& counter = traces_[name];
    ++counter.reports;
    counter.ticks += ticks;
}

void journal::add_violation(std::string text)
{
    std::lock_guard guard{mutex_};
    if (violations_.size() < most_violations)
        violations_.push_back(std::move(text));
    else
        ++further_violations_;
}

std::vector<error_record> journal::errors() const
{
    std::lock_guard guard{mutex_};
    return errors_.copy();
}

std::vector<output_record> journal::output() const
{
    std::lock_guard guard{mutex_};
    return output_.copy();
}

std::vector<dialog_record> journal::dialogs() const
{
    std::lock_guard guard{mutex_};
    return dialogs_.copy();
}

std::map<std::string, trace_counter> journal::traces() const
{
    std::lock_guard guard{mutex_};
    return traces_;
}

std::vector<std::string> journal::violations() const
{
    std::lock_guard guard{mutex_};
    auto lines = violations_;
    if (further_violations_ > 0) lines.push_back("and " + std::to_string(further_violations_) + " further violations.");
    return lines;
}

void journal::clear()
{
    std::lock_guard guard{mutex_};
    errors_.clear();
    output_.clear();
    dialogs_.clear();
    traces_.clear();
    violations_.clear();
    further_violations_ = 0;
}

}  // namespace zentrix::host
