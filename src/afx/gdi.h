#pragma once

#include <windows.h>

#include <utility>

#include "afx/object.h"
#include "afx/types.h"

class CWnd;

/// Owns an object of the graphics system and deletes it in the end.
class CGdiObject : public CObject
{
  public:
    ~CGdiObject() override { DeleteObject(); }

    HGDIOBJ m_hObject = nullptr;

    HGDIOBJ GetSafeHandle() const { return m_hObject; }
    /// Hands the object to somebody else.
    HGDIOBJ Detach() { return std::exchange(m_hObject, nullptr); }
    BOOL DeleteObject();

  protected:
    BOOL Attach(HGDIOBJ object);
};

class CBrush : public CGdiObject
{
  public:
    explicit CBrush(COLORREF colour) { Attach(::CreateSolidBrush(colour)); }
    operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }
};

class CBitmap : public CGdiObject
{
  public:
    operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }
    BOOL LoadBitmap(UINT id);
    BOOL CreateCompatibleBitmap(HDC dc, int width, int height)
    {
        return Attach(::CreateCompatibleBitmap(dc, width, height));
    }
};

class CRgn : public CGdiObject
{
  public:
    operator HRGN() const { return static_cast<HRGN>(m_hObject); }
    BOOL CreateEllipticRgn(int left, int top, int right, int bottom)
    {
        return Attach(::CreateEllipticRgn(left, top, right, bottom));
    }
    BOOL CreateEllipticRgnIndirect(const RECT* r) { return CreateEllipticRgn(r->left, r->top, r->right, r->bottom); }
};

/// A device context, lent unless a derived class says otherwise.
class CDC : public CObject
{
  public:
    CDC() = default;
    explicit CDC(HDC lent) : m_hDC{lent} {}

    HDC m_hDC = nullptr;
    operator HDC() const { return m_hDC; }

    void SetPixelV(int x, int y, COLORREF colour) { ::SetPixelV(m_hDC, x, y, colour); }
    void FillSolidRect(const RECT* area, COLORREF colour);
    void FillRgn(CRgn* region, CBrush* brush) { ::FillRgn(m_hDC, *region, *brush); }
    void Ellipse(int left, int top, int right, int bottom) { ::Ellipse(m_hDC, left, top, right, bottom); }
};

/// Between BeginPaint and EndPaint of a window.
class CPaintDC : public CDC
{
  public:
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;

    PAINTSTRUCT m_ps{};

  private:
    HWND window_;
};
