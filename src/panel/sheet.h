#pragma once

#include "panel/pages.h"

namespace qorv::panel {

/// The tabbed part of the panel: the five pages.
class CZXSheet : public CPropertySheet
{
  public:
    CZXSheet();
    ~CZXSheet() override { DestroyWindow(); }  // here, so that PostNcDestroy below is called

    /// Reloads the active page; the others reload when they become active.
    void RefreshFromTags();
    /// The first control of the active page that the keyboard reaches; null if the page is disabled.
    HWND FirstValue() const;
    BOOL OnInitDialog() override;

  protected:
    BOOL OnCommand(WPARAM wparam, LPARAM lparam) override;
    void PostNcDestroy() override;

  private:
    CZXPageRotation rotation_;
    CZXPageBasic basic_;
    CZXPageThird third_;
    CZXPageFourth fourth_;
    CZXPageFifth fifth_;
};

}  // namespace qorv::panel
