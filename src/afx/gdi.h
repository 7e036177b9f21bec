#pragma once

#include <windows.h>

#include "afx/object.h"
#include "afx/types.h"
#include "win32/handles.h"

class CWnd;

/// Owner of a GDI object.
class CGdiObject : public CObject
{
  public:
    HGDIOBJ GetSafeHandle() const { return object_.get(); }
    /// Releases ownership.
    HGDIOBJ Detach() { return object_.release(); }

  protected:
    BOOL Attach(HGDIOBJ object)
    {
        object_.reset(object);
        return object != nullptr;
    }

  private:
    win32::unique_gdi_object object_;
};

class CBrush : public CGdiObject
{
  public:
    explicit CBrush(COLORREF colour) { Attach(::CreateSolidBrush(colour)); }
    operator HBRUSH() const { return static_cast<HBRUSH>(GetSafeHandle()); }
};

class CBitmap : public CGdiObject
{
  public:
    operator HBITMAP() const { return static_cast<HBITMAP>(GetSafeHandle()); }
    /// Loads a bitmap. The greys 128, 192 and 223 become the system's 3-D shadow, face and light colours.
    BOOL LoadMappedBitmap(UINT id);
    /// Loads a bitmap with its own colours.
    BOOL LoadBitmap(UINT id);
};

class CRgn : public CGdiObject
{
  public:
    operator HRGN() const { return static_cast<HRGN>(GetSafeHandle()); }
    BOOL CreateEllipticRgn(int left, int top, int right, int bottom)
    {
        return Attach(::CreateEllipticRgn(left, top, right, bottom));
    }
    BOOL CreateEllipticRgnIndirect(const RECT* r) { return CreateEllipticRgn(r->left, r->top, r->right, r->bottom); }
};

/// A device context. The handle belongs to the caller or to a derived class.
class CDC : public CObject
{
  public:
    CDC() = default;
    explicit CDC(HDC dc) : m_hDC{dc} {}

    HDC m_hDC = nullptr;
    operator HDC() const { return m_hDC; }

    void SetPixelV(int x, int y, COLORREF colour) { ::SetPixelV(m_hDC, x, y, colour); }
    void FillSolidRect(const RECT* area, COLORREF colour);
    void FillRgn(CRgn* region, CBrush* brush) { ::FillRgn(m_hDC, *region, *brush); }
    void Ellipse(int left, int top, int right, int bottom) { ::Ellipse(m_hDC, left, top, right, bottom); }
};

/// The device context between BeginPaint and EndPaint of a window.
class CPaintDC : public CDC
{
  public:
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;

    PAINTSTRUCT m_ps{};

  private:
    HWND window_;
};
