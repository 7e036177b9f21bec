#pragma once

#include <windows.h>

#include <string>

/// The system's point and rectangle structures with constructors and arithmetic.
class CPoint : public POINT
{
  public:
    CPoint() : POINT{0, 0} {}
    CPoint(int left, int top) : POINT{left, top} {}
    explicit CPoint(LPARAM packed) : POINT{static_cast<short>(LOWORD(packed)), static_cast<short>(HIWORD(packed))} {}
};

class CRect : public RECT
{
  public:
    CRect() : RECT{0, 0, 0, 0} {}
    CRect(int l, int t, int r, int b) : RECT{l, t, r, b} {}
    CRect(const RECT& other) : RECT{other} {}

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    operator RECT*() { return this; }
    operator const RECT*() const { return this; }
};

/// Text in the characters of the Win32 API.
class CString
{
  public:
    CString() = default;
    CString(LPCTSTR text) : text_{text ? text : TEXT("")} {}

    operator LPCTSTR() const { return text_.c_str(); }
    int GetLength() const { return static_cast<int>(text_.size()); }
    friend bool operator==(const CString&, const CString&) = default;

  private:
    std::basic_string<TCHAR> text_;
};
