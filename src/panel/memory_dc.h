#pragma once

#include "afx/afx.h"
#include "win32/handles.h"

namespace qorv::panel {

/// Double buffering over a paint DC: drawing goes into a bitmap of the rectangle to be painted, in the same
/// coordinates, and is copied to the screen in one transfer on destruction.
class CMemDC : public CDC
{
  public:
    explicit CMemDC(CPaintDC* paint);
    ~CMemDC() override;

  private:
    CPaintDC* paint_;
    CRect area_;
    win32::unique_memory_dc memory_;
    win32::unique_bitmap bitmap_;
    win32::selected_object selected_;
};

}  // namespace qorv::panel
