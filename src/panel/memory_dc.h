#pragma once

#include "afx/afx.h"

namespace qorv::panel {

/// Takes the place of a paint DC so that nothing flickers: all drawing goes into a bitmap of the rectangle to be
/// painted, in the same coordinates, and reaches the screen in one transfer at the end.
class CMemDC : public CDC
{
  public:
    explicit CMemDC(CPaintDC* paint);
    ~CMemDC() override;

  private:
    CPaintDC* paint_;
    CRect area_;
    CBitmap bitmap_;
    HGDIOBJ former_bitmap_ = nullptr;
};

}  // namespace qorv::panel
