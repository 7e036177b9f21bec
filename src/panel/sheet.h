#pragma once

#include "panel/pages.h"

namespace qorv::panel {

/// The tabbed part of the panel, with the five pages.
class CZXSheet : public CPropertySheet
{
    DECLARE_DYNAMIC(CZXSheet)
  public:
    CZXSheet();
    ~CZXSheet() override { DestroyWindow(); }  // while this is still a CZXSheet, to be forgotten as the current one

    /// Reloads the page in front; the others reload when they come to the front.
    void RefreshFromTags();
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
