#include "panel/memory_dc.h"

namespace qorv::panel {

CMemDC::CMemDC(CPaintDC* paint) : paint_{paint}, area_{paint->m_ps.rcPaint}
{
    m_hDC = ::CreateCompatibleDC(*paint_);
    bitmap_.CreateCompatibleBitmap(*paint_, area_.Width(), area_.Height());
    former_bitmap_ = ::SelectObject(m_hDC, bitmap_);
    ::SetWindowOrgEx(m_hDC, area_.left, area_.top, nullptr);
}

CMemDC::~CMemDC()
{
    ::BitBlt(*paint_, area_.left, area_.top, area_.Width(), area_.Height(), m_hDC, area_.left, area_.top, SRCCOPY);
    ::SelectObject(m_hDC, former_bitmap_);
    ::DeleteDC(m_hDC);
}

}  // namespace qorv::panel
