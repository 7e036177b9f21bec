#pragma once

#include <windows.h>

#include <commctrl.h>

#include "afx/wnd.h"

class CButton : public CWnd
{
  public:
    void SetCheck(int state) { SendMessage(BM_SETCHECK, static_cast<WPARAM>(state)); }
    /// The caller keeps ownership of the bitmap.
    void SetBitmap(HBITMAP bitmap) { SendMessage(BM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap)); }
};

class CEdit : public CWnd
{
  public:
    BOOL Create(DWORD style, const RECT& place, CWnd* parent, UINT id)
    {
        return CreateEx(0, TEXT("EDIT"), nullptr, style, place, parent, id);
    }
    void SetReadOnly(BOOL read_only = TRUE) { SendMessage(EM_SETREADONLY, static_cast<WPARAM>(read_only)); }
    void SetSel(int start, int end) { SendMessage(EM_SETSEL, static_cast<WPARAM>(start), end); }
};

class CComboBox : public CWnd
{
  public:
    int AddString(LPCTSTR text)
    {
        return static_cast<int>(SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
    }
};

class CSliderCtrl : public CWnd
{
  public:
    BOOL Create(DWORD style, const RECT& place, CWnd* parent, UINT id)
    {
        return CreateEx(0, TRACKBAR_CLASS, nullptr, style, place, parent, id);
    }
    int GetPos() const { return static_cast<int>(SendMessage(TBM_GETPOS)); }
    void SetPos(int position) { SendMessage(TBM_SETPOS, TRUE, position); }
    int GetRangeMin() const { return static_cast<int>(SendMessage(TBM_GETRANGEMIN)); }
    int GetRangeMax() const { return static_cast<int>(SendMessage(TBM_GETRANGEMAX)); }
    void SetRange(int minimum, int maximum, BOOL redraw = FALSE)
    {
        SendMessage(TBM_SETRANGEMIN, static_cast<WPARAM>(redraw), minimum);
        SendMessage(TBM_SETRANGEMAX, static_cast<WPARAM>(redraw), maximum);
    }
    int GetLineSize() const { return static_cast<int>(SendMessage(TBM_GETLINESIZE)); }
    void SetLineSize(int size) { SendMessage(TBM_SETLINESIZE, 0, size); }
    int GetPageSize() const { return static_cast<int>(SendMessage(TBM_GETPAGESIZE)); }
    void SetPageSize(int size) { SendMessage(TBM_SETPAGESIZE, 0, size); }
};

class CSpinButtonCtrl : public CWnd
{
  public:
    void SetRange32(int lower, int upper) { SendMessage(UDM_SETRANGE32, static_cast<WPARAM>(lower), upper); }
    BOOL SetAccel(int count, UDACCEL* table)
    {
        return static_cast<BOOL>(
            SendMessage(UDM_SETACCEL, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(table)));
    }
};

class CTabCtrl : public CWnd
{
  public:
    /// Converts a window rectangle to the display area of the pages (larger FALSE), or back (TRUE).
    void AdjustRect(BOOL larger, RECT* area) const
    {
        SendMessage(TCM_ADJUSTRECT, static_cast<WPARAM>(larger), reinterpret_cast<LPARAM>(area));
    }
};
