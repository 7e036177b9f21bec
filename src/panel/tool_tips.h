#pragma once

#include <string>

#include "afx/afx.h"

namespace qorv::panel {

/// The tooltip window of the panel. Texts are asked for each time one is shown.
class tool_tips : public CWnd
{
  public:
    /// Creates the window. FALSE when the system creates none; the panel then has no tooltips.
    BOOL Create(CWnd* parent);

    /// Explains a child of `dialog`, which receives the questions. A static control has no mouse messages of its own:
    /// its rectangle in the dialog is explained, so it must not move afterwards.
    void Explain(const CWnd& dialog, HWND control);

    /// Hides the tooltip that is shown.
    void Pop() { SendMessage(TTM_POP); }
};

/// The control that a notification asks about; null for other notifications. For a knob's inner edit it is the knob.
HWND asked_by_tool_tips(HWND dialog, const NMHDR& notification);

/// Answers a question. `text` is kept in `buffer`, which must last as long as the tooltip.
void answer_tool_tips(NMHDR& notification, const std::string& text, std::wstring& buffer);

}  // namespace qorv::panel
