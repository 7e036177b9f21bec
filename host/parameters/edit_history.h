#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <utility>

namespace zentrix::host {

/// Undo and redo. The history holds copies of the state before and after each step, and forgets the oldest steps beyond
/// a limit. Consecutive edits of the same name are one step, until end_step, undo or redo: all positions of a knob in
/// one drag, or all characters typed into one field.
/// State  a value with operator==
template <class State>
class edit_history
{
  public:
    /// most_steps  that can be undone, at least 1
    explicit edit_history(State present, std::size_t most_steps = 200) : most_steps_{most_steps}
    {
        states_.push_back(std::move(present));
    }

    const State& present() const noexcept { return states_[position_]; }

    /// Records the state after an edit. All steps that were undone are forgotten. A state equal to the present one is
    /// no edit. A step that ends where it began is removed.
    /// name      of what was edited, for the menu
    /// Returns   whether the state was different
    bool record(State after, const std::string& name)
    {
        if (after == present()) return false;
        forget_undone();
        const bool continues = open_ && !names_.empty() && names_.back() == name;
        if (continues) {
            states_.pop_back();
            names_.pop_back();
        }
        open_ = !(after == states_.back());
        if (open_) {
            states_.push_back(std::move(after));
            names_.push_back(name);
        }
        if (names_.size() > most_steps_) {
            states_.pop_front();
            names_.pop_front();
        }
        position_ = names_.size();
        return true;
    }

    /// The next edit begins a new step.
    void end_step() noexcept { open_ = false; }

    /// Goes one step back. Returns the state there, null if there is no step to undo.
    const State* undo() noexcept { return go(can_undo() ? position_ - 1 : position_); }
    /// Goes one step forward again. Returns the state there, null if no step was undone.
    const State* redo() noexcept { return go(can_redo() ? position_ + 1 : position_); }

    bool can_undo() const noexcept { return position_ > 0; }
    bool can_redo() const noexcept { return position_ < names_.size(); }
    /// The name of the step that undo or redo concerns; empty if there is none.
    std::string undo_name() const { return can_undo() ? names_[position_ - 1] : ""; }
    std::string redo_name() const { return can_redo() ? names_[position_] : ""; }

  private:
    void forget_undone()
    {
        while (can_redo()) {
            states_.pop_back();
            names_.pop_back();
        }
    }

    const State* go(std::size_t position) noexcept
    {
        open_ = false;
        if (position == position_) return nullptr;
        position_ = position;
        return &states_[position];
    }

    std::size_t most_steps_;
    std::deque<State> states_;       ///< one more than steps
    std::deque<std::string> names_;  ///< of the steps
    std::size_t position_ = 0;       ///< of the present state
    bool open_ = false;              ///< whether an edit of the same name continues the last step
};

}  // namespace zentrix::host
