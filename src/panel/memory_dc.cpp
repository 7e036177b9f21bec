#include "panel/memory_dc.h"

namespace qorv::panel {

CMemDC::CMemDC(CPaintDC* paint)
    : paint_{paint},
      area_{paint->m_ps.rcPaint},
      memory_{::CreateCompatibleDC(*paint)},
      bitmap_{::CreateCompatibleBitmap(*paint, area_.Width(), area_.Height())},
      selected_{memory_.get(), bitmap_.get()}
{
    m_hDC = memory_.get();
    ::SetWindowOrgEx(m_hDC, area_.left, area_.top, nullptr);
}

CMemDC::~CMemDC()
{
    ::BitBlt(*paint_, area_.left, area_.top, area_.Width(), area_.Height(), m_hDC, area_.left, area_.top, SRCCOPY);
}

}  // namespace qorv::panel
