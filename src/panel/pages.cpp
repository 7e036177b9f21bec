#include "panel/pages.h"

#include "resources/resource.h"

namespace qorv::panel {

namespace {

constexpr row_controls round_row(UINT value, UINT spin, UINT step, UINT unit, UINT label)
{
    return {value, spin, step, 0, 0, label, unit};
}

constexpr row_controls rotation_rows[] = {round_row(ROW_C1), round_row(ROW_C3), round_row(ROW_C5)};
constexpr row_controls basic_rows[] = {{ROW_A1}, {ROW_B2}, {ROW_A2}};
constexpr row_controls third_rows[] = {{ROW_S3}, {ROW_A3}};
constexpr row_controls fourth_rows[] = {{ROW_B4}, {ROW_D4}, {ROW_A4}};
constexpr row_controls fifth_rows[] = {{ROW_A5}, {ROW_R5}, {ROW_S5}};

constexpr UINT angle_headers[] = {IDC_MODULUS_HEADER, IDC_ANGLE_HEADER, IDC_VALUE_HEADER, IDC_STEP_HEADER};
constexpr UINT round_headers[] = {IDC_VALUE_HEADER, IDC_STEP_HEADER};

constexpr page_design rotation_design{page_id::rotation, IDD_ROTATION, rotation_rows, round_headers, 0};
constexpr page_design basic_design{page_id::basic, IDD_BASIC, basic_rows, angle_headers, 359};
constexpr page_design third_design{page_id::third, IDD_THIRD, third_rows, angle_headers, 359};
constexpr page_design fourth_design{page_id::fourth, IDD_FOURTH, fourth_rows, angle_headers, 359};
constexpr page_design fifth_design{page_id::fifth, IDD_FIFTH, fifth_rows, angle_headers, 259};

}  // namespace

CZXPageRotation::CZXPageRotation() : CZXPage{rotation_design} {}
CZXPageBasic::CZXPageBasic() : CZXPage{basic_design} {}
CZXPageThird::CZXPageThird() : CZXPage{third_design} {}
CZXPageFourth::CZXPageFourth() : CZXPage{fourth_design} {}
CZXPageFifth::CZXPageFifth() : CZXPage{fifth_design} {}

void CZXPageBasic::DoDataExchange(CDataExchange* exchange)
{
    CZXPage::DoDataExchange(exchange);
    DDX_Text(exchange, IDC_MESSAGE, message_);
}

void CZXPageBasic::ShowMessage(const CString& text)
{
    message_ = text;
    UpdateData(FALSE);
    GetDlgItem(IDC_MESSAGE)->ShowWindow(SW_SHOW);
}

}  // namespace qorv::panel
