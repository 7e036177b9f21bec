#include "panel/page.h"
#include "panel/rules/tip_texts.h"
#include "resources/resource.h"

namespace qorv::panel {

void CZXPage::Explain(tool_tips& tips)
{
    tips_ = &tips;
    for (HWND control = ::GetWindow(m_hWnd, GW_CHILD); control; control = ::GetWindow(control, GW_HWNDNEXT)) {
        if (tip_of(static_cast<UINT>(::GetDlgCtrlID(control))).empty()) continue;
        tips.Explain(*this, control);
        if (const HWND inner_edit = ::GetWindow(control, GW_CHILD)) tips.Explain(*this, inner_edit);
    }
}

std::string CZXPage::tip_of(UINT id) const
{
    for (std::size_t r = 0; r < row_count(); ++r) {
        const row_controls& ids = design_.rows[r];
        const row_of_page row{coefficient_of(r), values_.rows[r]};
        if (id == ids.modulus || id == ids.label || id == ids.unit) return value_tip(row);
        if (id == ids.modulus_spin) return value_arrows_tip(row);
        if (id == ids.step) return step_tip(row);
        if (id == ids.knob) return angle_tip(row);
        if (id == ids.angle_spin) return angle_arrows_tip(row);
    }
    switch (id) {
        case IDC_MODULUS_HEADER: return modulus_header_tip;
        case IDC_ANGLE_HEADER: return angle_header_tip;
        case IDC_VALUE_HEADER: return value_header_tip;
        case IDC_STEP_HEADER: return step_header_tip;
        default: return {};
    }
}

BOOL CZXPage::OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    auto& notification = *reinterpret_cast<NMHDR*>(lparam);
    const HWND asked = asked_by_tool_tips(m_hWnd, notification);
    if (!asked) return CPropertyPage::OnNotify(wparam, lparam, result);
    answer_tool_tips(notification, tip_of(static_cast<UINT>(::GetDlgCtrlID(asked))), tip_);
    return TRUE;
}

}  // namespace qorv::panel
