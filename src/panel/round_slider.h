#pragma once

#include "afx/afx.h"
#include "panel/rules/knob_geometry.h"

namespace qorv::panel {

class CRoundSliderCtrl;

/// The edit field in the middle of a round slider. Typing moves the slider at once. A click selects the whole text, a
/// second one places the caret.
class CRoundSliderEdit : public CEdit
{
    DECLARE_MESSAGE_MAP()
  public:
    void SetOwner(CRoundSliderCtrl* owner) { owner_ = owner; }
    void SetFont(HFONT font, BOOL redraw);
    void Select();  ///< takes the focus and selects the text

  protected:
    void OnChange();
    void OnLButtonDown(UINT flags, CPoint mouse);
    BOOL OnMouseWheel(UINT flags, short turned, CPoint mouse);
    UINT OnGetDlgCode();
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    void OnChar(UINT character, UINT repeat, UINT flags);

  private:
    CRoundSliderCtrl* owner_ = nullptr;
    bool in_change_ = false;
};

/// Whether a round slider shows its position as text and whether it can be typed.
enum class edit_mode
{
    hidden,
    read_only,
    editable
};

/// A knob with the interface of a linear slider: a small disc on a shaded ring, moved by mouse, keys or typing. The
/// parent sees a slider with range, position, line and page size, and a WM_HSCROLL for every change. The message is
/// posted, so that it arrives after the handler that moved the knob has returned. For the keyboard, knob and text are
/// two stops: Tab goes from the knob to its text, and typing a digit on the knob begins a new text.
class CRoundSliderCtrl : public CSliderCtrl
{
    DECLARE_MESSAGE_MAP()
  public:
    virtual void SetFormat(const CString& format);  ///< printf format of the text, for one long
    virtual CString GetFormat() const { return format_; }
    virtual CString FormatPos() const { return FormatPos(GetPos()); }
    virtual CString FormatPos(int position) const;
    virtual void SetKnobRadius(int pixels) { knob_radius_ = pixels; }  ///< takes effect at the next layout
    virtual int GetKnobRadius() const { return knob_radius_; }
    virtual void SetZero(int degrees);
    virtual int GetZero() const { return zero_; }
    virtual void SetInverted(bool inverted);
    virtual bool GetInverted() const { return inverted_; }
    virtual void SetEditMode(edit_mode mode);
    virtual edit_mode GetEditMode() const { return edit_mode_; }
    virtual CRect GetEditRect() const;
    /// Fits ring, window region and inline edit to the client area. Creates the edit on the first call.
    virtual void Layout();
    /// Moves to the position at the angle of a point. Returns true if the position changed.
    virtual bool SetPos(CPoint mouse);
    /// Posts WM_HSCROLL with this code and the position to the parent.
    virtual void NotifyParent(int code);
    using CSliderCtrl::SetPos;

  protected:
    virtual LRESULT OnSetPos(WPARAM redraw, LPARAM position);
    virtual LRESULT OnSetFont(WPARAM font, LPARAM redraw);
    virtual void PlaceEdit();

  public:
    virtual void SetEditStyle(DWORD style) { edit_style_ = style; }  ///< before the edit is created

    /// The change of the position by one notch of the mouse wheel, 10 at first. With Shift it is the line size, with
    /// Ctrl the page size.
    void SetWheelSize(int size) { wheel_size_ = size; }
    /// Turns by notches of the wheel; away from the user is a larger position. Wraps at the ends.
    /// flags  those of WM_MOUSEWHEEL
    void Turn(int turned, UINT flags);

    /// Repaints at once.
    void Redraw();

  protected:
    BOOL PreCreateWindow(CREATESTRUCT& create) override;
    void PreSubclassWindow() override;
    int OnCreate(LPCREATESTRUCT create);
    void OnSize(UINT type, int width, int height);
    void OnPaint();
    BOOL OnEraseBkgnd(CDC* dc);
    void OnEnable(BOOL enable);
    void OnLButtonDown(UINT flags, CPoint mouse);
    void OnMouseMove(UINT flags, CPoint mouse);
    void OnLButtonUp(UINT flags, CPoint mouse);
    void OnCaptureChanged(CWnd* other);
    BOOL OnMouseWheel(UINT flags, short turned, CPoint mouse);
    UINT OnGetDlgCode();
    void OnChar(UINT character, UINT repeat, UINT flags);
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    void OnKeyUp(UINT key, UINT repeat, UINT flags);
    void OnSetFocus(CWnd* previous);
    void OnKillFocus(CWnd* next);

  private:
    bool edit_takes_focus() const;
    void set_up();
    void show_edit();
    void make_edit();
    dial scale() const;
    void paint(CDC& dc);
    void paint_knob(CDC& dc);

    knob_layout layout_{};
    int zero_ = 0;
    bool inverted_ = false;
    CString format_{TEXT("%ld")};
    edit_mode edit_mode_ = edit_mode::hidden;
    CRoundSliderEdit edit_;
    int knob_radius_ = 7;
    int wheel_size_ = 10;
    int turned_ = 0;  ///< of the wheel, less than a notch
    bool dragging_ = false, moved_ = false;
    DWORD edit_style_ = 0;
    bool being_created_ = false;
};

}  // namespace qorv::panel
