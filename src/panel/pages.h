#pragma once

#include "panel/page.h"

namespace qorv::panel {

/// The round coefficients C1, C3 and C5.
class CZXPageRotation : public CZXPage
{
    DECLARE_DYNAMIC(CZXPageRotation)
  public:
    CZXPageRotation();
};

/// A1, B2 and A2.
class CZXPageBasic : public CZXPage
{
    DECLARE_DYNAMIC(CZXPageBasic)
  public:
    CZXPageBasic();
    /// Shows a line of text in the page's otherwise hidden message line.
    void ShowMessage(const CString& text);

  protected:
    void DoDataExchange(CDataExchange* exchange) override;

  private:
    CString message_{TEXT("NOT USED")};
};

/// S3 and A3.
class CZXPageThird : public CZXPage
{
    DECLARE_DYNAMIC(CZXPageThird)
  public:
    CZXPageThird();
};

/// B4, D4 and A4.
class CZXPageFourth : public CZXPage
{
    DECLARE_DYNAMIC(CZXPageFourth)
  public:
    CZXPageFourth();
};

/// A5, R5 and S5: digits only in its edits, and angle spins that count to 259 only. Neither limits the values: the tags
/// may hold fractions, and a spin's own position is not used.
class CZXPageFifth : public CZXPage
{
    DECLARE_DYNAMIC(CZXPageFifth)
  public:
    CZXPageFifth();
};

}  // namespace qorv::panel
