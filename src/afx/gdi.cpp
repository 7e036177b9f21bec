#include "afx/gdi.h"

#include "afx/app.h"
#include "afx/wnd.h"

BOOL CBitmap::LoadMappedBitmap(UINT id)
{
    return Attach(::LoadImage(AfxGetResourceHandle(), MAKEINTRESOURCE(id), IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS));
}

BOOL CBitmap::LoadBitmap(UINT id)
{
    return Attach(::LoadImage(AfxGetResourceHandle(), MAKEINTRESOURCE(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
}

void CDC::FillSolidRect(const RECT* area, COLORREF colour)
{
    ::SetBkColor(m_hDC, colour);
    ::ExtTextOut(m_hDC, 0, 0, ETO_OPAQUE, area, nullptr, 0, nullptr);
}

CPaintDC::CPaintDC(CWnd* window) : window_{window->m_hWnd} { m_hDC = ::BeginPaint(window_, &m_ps); }

CPaintDC::~CPaintDC() { ::EndPaint(window_, &m_ps); }
