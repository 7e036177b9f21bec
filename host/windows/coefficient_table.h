#pragma once

#include <array>
#include <optional>

#include "host/windows/tool_tips.h"
#include "host/windows/window.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// A window with all fourteen coefficients at a glance: value, unit, angle, and the phase by which each shifts the
/// highest frequency that counts, see lens::phase_shifts_of. Those above lens::noticeable_phase_shift are marked.
class coefficient_table : public window
{
  public:
    /// owner  the window in front of which this one stays
    explicit coefficient_table(HWND owner);

    /// Shows other values. Texts that stay the same are not drawn again.
    void show(const lens::optics& setup);
    /// The sentence above the table.
    std::string heading() const;
    /// The text in a row (the order of lens::coefficient) and a column, from 0.
    std::string cell(int row, int column) const;
    static constexpr int columns = 6;

    /// Sets the listener for the close button, which does nothing else.
    void on_close(std::function<void()> listener) { close_ = std::move(listener); }

  protected:
    LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;

  private:
    void add_columns();
    void lay_out();
    void set_cell(int row, int column, const std::string& text);
    LRESULT colour_of_row(LPARAM drawing) const;

    HWND heading_ = nullptr, list_ = nullptr;  ///< children
    std::optional<tool_tips> tips_;
    std::array<bool, lens::coefficient_count> matters_{};
    std::function<void()> close_;
};

}  // namespace zentrix::host
