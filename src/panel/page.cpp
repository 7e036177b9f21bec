#include "panel/page.h"

#include <windows.h>

#include <uxtheme.h>

#include <exception>
#include <string>

#include "panel/current.h"
#include "panel/rules/number_text.h"
#include "panel/rules/spin.h"

namespace qorv::panel {

namespace {

std::string text_in(HWND edit)
{
    // Numbers are ASCII. Any other character becomes '?', which ends a number.
    wchar_t wide[64] = {};
    ::GetWindowTextW(edit, wide, static_cast<int>(std::size(wide)));
    std::string text;
    for (const wchar_t* c = wide; *c; ++c) text += *c < 0x80 ? static_cast<char>(*c) : '?';
    return text;
}

/// Exchanges a number field. An incomplete number leaves the member unchanged, without a message. A field that shows
/// the member already is not touched in either direction: the caret stays, and so do digits beyond those shown.
void DDX_Number(CDataExchange* exchange, UINT id, float& value)
{
    const HWND edit = exchange->PrepareCtrl(static_cast<int>(id));
    const std::string shown = text_in(edit);
    if (shown == text_of(value)) return;
    float number = 0;
    if (exchange->m_bSaveAndValidate) {
        read_number(shown, value);
    } else if (!read_number(shown, number) || number != value) {
        ::SetWindowTextA(edit, text_of(value).c_str());
    }
}

}  // namespace

BEGIN_MESSAGE_MAP(CZXPage, CPropertyPage)
ON_CONTROL_RANGE(EN_CHANGE, 1, 0xffff, &CZXPage::OnEditChange)
ON_NOTIFY_RANGE(static_cast<UINT>(UDN_DELTAPOS), 1, 0xffff, &CZXPage::OnDeltaPos)
ON_WM_HSCROLL()
END_MESSAGE_MAP()

CZXPage::CZXPage(const page_design& design) : CPropertyPage{design.template_id}, design_{design}
{
    for (row_values& row : values_.rows) row.angle_step = 10;  // until the first load
}

void CZXPage::DoDataExchange(CDataExchange* exchange)
{
    CPropertyPage::DoDataExchange(exchange);
    for (std::size_t r = 0; r < row_count(); ++r) {
        const row_controls& ids = design_.rows[r];
        row_values& values = values_.rows[r];
        DDX_Number(exchange, ids.modulus, values.modulus);
        DDX_Number(exchange, ids.step, values.modulus_step);
        DDX_Control(exchange, static_cast<int>(ids.modulus_spin), rows_[r].modulus_spin);
        if (coefficient_of(r).round()) continue;
        DDX_Control(exchange, static_cast<int>(ids.angle_spin), rows_[r].angle_spin);
        DDX_Control(exchange, static_cast<int>(ids.knob), rows_[r].knob);
        DDX_Slider(exchange, static_cast<int>(ids.knob), values.angle);
    }
}

BOOL CZXPage::OnInitDialog()
{
    stage_ = stage::filling;
    std::exception_ptr failure;
    try {
        LoadFromTags();
    } catch (...) {
        failure = std::current_exception();  // rethrown when the page is complete
    }
    for (row_windows& r : rows_) {  // each knob sets its range, 0..359, itself
        r.knob.SetEditMode(edit_mode::editable);
        r.knob.SetKnobRadius(5);
        r.knob.SetEditStyle(ES_RIGHT);
    }
    stage_ = stage::in_use;
    const BOOL focus = CPropertyPage::OnInitDialog();
    const LRESULT font = SendMessage(WM_GETFONT);
    for (row_windows& r : rows_) {
        if (r.knob.m_hWnd) r.knob.SendMessage(WM_SETFONT, static_cast<WPARAM>(font), TRUE);
    }
    narrow_margins();
    set_spin_ranges();
    set_accelerations();
    if (failure) std::rethrow_exception(failure);
    return focus;
}

void CZXPage::narrow_margins()
{
    // The fields are a few digits wide. With the default margins "0.01" would be cut.
    for (const row_controls& ids : design_.rows) {
        for (const UINT edit : {ids.modulus, ids.step}) {
            ::SendMessage(::GetDlgItem(m_hWnd, static_cast<int>(edit)), EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN,
                          0);
        }
    }
}

void CZXPage::set_spin_ranges()
{
    for (row_windows& r : rows_) {
        if (r.modulus_spin.m_hWnd) r.modulus_spin.SetRange32(0, 9999);
        if (r.angle_spin.m_hWnd) r.angle_spin.SetRange32(0, design_.angle_spin_maximum);
    }
}

void CZXPage::set_accelerations()
{
    for (std::size_t r = 0; r < row_count(); ++r) {
        if (!rows_[r].angle_spin.m_hWnd) continue;
        std::array<UDACCEL, 3> table;
        auto next = table.begin();
        for (const auto& [seconds, increment] : angle_acceleration(values_.rows[r].angle_step)) {
            *next++ = {seconds, increment};
        }
        rows_[r].angle_spin.SetAccel(static_cast<int>(table.size()), table.data());
    }
}

BOOL CZXPage::OnSetActive()
{
    // The knobs fill their background with the button colour, which differs from the texture of a tab page.
    ::EnableThemeDialogTexture(m_hWnd, ETDT_DISABLE);
    LoadFromTags();
    return TRUE;  // the base class would refill the controls even if nothing changed
}

void CZXPage::LoadFromTags()
{
    const page_load loaded = load_page(*current::link, design_.page);
    if (!loaded.has_handler) return enable_page(false);
    if (loaded.values != values_) {
        values_ = loaded.values;
        if (stage_ == stage::in_use) {
            set_accelerations();
            UpdateData(FALSE);
        }
    }
    enable_page(loaded.enabled);
}

void CZXPage::enable_page(bool enable)
{
    if (enable == enabled_) return;
    enabled_ = enable;
    const auto set = [&](UINT id) {
        if (id) GetDlgItem(static_cast<int>(id))->EnableWindow(enable);
    };
    for (const UINT header : design_.headers) set(header);
    for (const row_controls& ids : design_.rows) {
        for (const UINT id : {ids.modulus, ids.modulus_spin, ids.step, ids.angle_spin, ids.label, ids.unit}) set(id);
    }
    for (const row_controls& ids : design_.rows) set(ids.knob);
}

void CZXPage::OnEditChange(UINT id)
{
    if (stage_ != stage::in_use) return;
    float typed = 0;
    for (std::size_t r = 0; r < row_count(); ++r) {
        const row_controls& ids = design_.rows[r];
        if (id != ids.modulus && id != ids.step) continue;
        if (!read_number(text_in(::GetDlgItem(m_hWnd, static_cast<int>(id))), typed)) return;
        UpdateData(TRUE);
        if (id == ids.modulus) {
            current::link->write_float(coefficient_of(r).modulus, values_.rows[r].modulus);
            current::link->call(on_change);
        } else {
            current::link->write_float(coefficient_of(r).modulus_step, values_.rows[r].modulus_step);
        }
        return;
    }
}

void CZXPage::OnDeltaPos(UINT id, NMHDR* header, LRESULT* result)
{
    *result = 0;  // accepts the change of the spin's own position, which is not used
    const int delta = reinterpret_cast<const NMUPDOWN*>(header)->iDelta;
    for (std::size_t r = 0; r < row_count(); ++r) {
        if (id == design_.rows[r].modulus_spin) return spin_modulus_of(r, delta);
        if (id == design_.rows[r].angle_spin) return spin_angle_of(r, delta);
    }
}

void CZXPage::spin_modulus_of(std::size_t row, int delta)
{
    UpdateData(TRUE);
    row_values& values = values_.rows[row];
    values.modulus = spin_modulus(values.modulus, values.modulus_step, delta);
    UpdateData(FALSE);
    current::link->write_float(coefficient_of(row).modulus, values.modulus);
    current::link->call(on_change);
}

void CZXPage::spin_angle_of(std::size_t row, int delta)
{
    UpdateData(TRUE);
    const CRoundSliderCtrl& knob = rows_[row].knob;
    const dial range{knob.GetRangeMin(), knob.GetRangeMax()};
    const auto shift = ::GetKeyState(VK_SHIFT) < 0 ? shift_key::down : shift_key::up;
    values_.rows[row].angle = spin_angle(values_.rows[row].angle, delta, shift, range);
    UpdateData(FALSE);  // the knob's notification stores the tag
}

void CZXPage::OnHScroll(UINT code, UINT position, CWnd* knob)
{
    panel_link& link = *current::link;
    if (!link.has_tags()) return;
    UpdateData(TRUE);
    const auto id = static_cast<UINT>(knob ? knob->GetDlgCtrlID() : 0);
    for (std::size_t r = 0; r < row_count(); ++r) {
        if (coefficient_of(r).round() || design_.rows[r].knob != id) continue;
        const char* const key = coefficient_of(r).angle;
        if (link.read_long(key).value_or(0) == values_.rows[r].angle) break;
        link.write_long(key, values_.rows[r].angle);
        link.call(on_change);
        return;
    }
    CPropertyPage::OnHScroll(code, position, knob);
}

}  // namespace qorv::panel
