#pragma once

#include "afx/afx.h"

namespace qorv::panel {

/// A push button or push-like check box with a picture that was drawn on a grey ground. The ground is not painted, so
/// that the button looks the same around and behind the picture; a disabled button has a faint picture.
class picture_button : public CButton
{
    DECLARE_MESSAGE_MAP()
  public:
    /// Sets the picture.
    /// bitmap  number of the resource; greys on a ground of `picture_ground`
    void LoadPicture(UINT bitmap);

  protected:
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
    void OnPaint();
    BOOL OnEraseBkgnd(CDC*) { return TRUE; }

  private:
    void paint(HDC dc);
    void paint_frame(HDC dc, RECT area, bool down) const;

    CBitmap bitmap_;   ///< as the system's button knows it
    CBitmap picture_;  ///< the same in greys, unmapped
};

}  // namespace qorv::panel
