#pragma once

#include "panel/page.h"

namespace qorv::panel {

/// The round coefficients C1, C3 and C5.
class CZXPageRotation : public CZXPage
{
  public:
    CZXPageRotation();
};

/// A1, B2 and A2.
class CZXPageBasic : public CZXPage
{
  public:
    CZXPageBasic();
    /// Shows a text in the page's message line, which is hidden until then. The panel itself never calls it.
    void ShowMessage(const CString& text);

  protected:
    void DoDataExchange(CDataExchange* exchange) override;

  private:
    CString message_{TEXT("NOT USED")};
};

/// S3 and A3.
class CZXPageThird : public CZXPage
{
  public:
    CZXPageThird();
};

/// B4, D4 and A4.
class CZXPageFourth : public CZXPage
{
  public:
    CZXPageFourth();
};

/// A5, R5 and S5. Its edits accept digits only and its angle spins have the range 0..259. Neither limits the values:
/// tags may hold fractions, and a spin's own position is not used.
class CZXPageFifth : public CZXPage
{
  public:
    CZXPageFifth();
};

}  // namespace qorv::panel
