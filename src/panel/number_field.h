#pragma once

#include "afx/afx.h"
#include "panel/rules/number_text.h"

namespace qorv::panel {

/// A number field of a page. The user may type any text. While it is no number, the field has the value with which it
/// was entered; when the user leaves it, it shows that value again. A number that the handler refuses counts as none.
class number_field
{
  public:
    /// id     of the edit control
    /// value  the member that the field shows; must outlive the field
    number_field(UINT id, float& value) : id_{id}, value_{value} {}

    UINT id() const { return id_; }
    float value() const { return value_; }

    /// Begins typing.
    void enter();
    /// Takes over what was typed. Returns false if the value stays as it was because the text is no number.
    bool take_typed(HWND edit);
    /// Marks what was typed last, and returns to the value with which the field was entered.
    void refuse(HWND edit);
    /// Whether the edit shows a number that was not refused.
    bool has_number(HWND edit) const;
    /// Whether the text is to be marked, as no number or as a refused one. An unfinished one is not.
    bool wrong() const { return wrong_; }

    /// Exchanges text and value. A field that shows the value already is not touched in either direction: the caret
    /// stays, and so do digits beyond those shown.
    void exchange(CDataExchange* exchange);

  private:
    void mark(HWND edit, bool wrong);

    UINT id_;
    float& value_;
    float before_ = 0;  ///< the value to return to
    float typed_ = 0;   ///< the value after the last typing; another value is the work of an arrow or of the tags
    bool wrong_ = false;
};

}  // namespace qorv::panel
