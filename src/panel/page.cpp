#include "panel/page.h"

#include <windows.h>

#include <uxtheme.h>

#include <algorithm>
#include <exception>

#include "panel/current.h"
#include "panel/rules/spin.h"
#include "win32/handles.h"

namespace qorv::panel {

namespace {

constexpr int knob_radius = 5;  // at 96 dots per inch
constexpr COLORREF wrong_text = RGB(0, 0, 0), wrong_background = RGB(255, 190, 190);

}  // namespace

BEGIN_MESSAGE_MAP(CZXPage, CPropertyPage)
ON_CONTROL_RANGE(EN_CHANGE, 1, 0xffff, &CZXPage::OnEditChange)
ON_CONTROL_RANGE(EN_SETFOCUS, 1, 0xffff, &CZXPage::OnEditEntered)
ON_CONTROL_RANGE(EN_KILLFOCUS, 1, 0xffff, &CZXPage::OnEditLeft)
ON_MESSAGE(WM_CTLCOLOREDIT, &CZXPage::OnEditColour)
ON_NOTIFY_RANGE(static_cast<UINT>(UDN_DELTAPOS), 1, 0xffff, &CZXPage::OnDeltaPos)
ON_WM_HSCROLL()
END_MESSAGE_MAP()

CZXPage::CZXPage(const page_design& design)
    : CPropertyPage{design.template_id}, design_{design}, wrong_brush_{wrong_background}
{
    for (row_values& row : values_.rows) row.angle_step = 10;  // until the first load
    for (std::size_t r = 0; r < row_count(); ++r) {
        fields_.emplace_back(design_.rows[r].modulus, values_.rows[r].modulus);
        fields_.emplace_back(design_.rows[r].step, values_.rows[r].modulus_step);
    }
}

void CZXPage::DoDataExchange(CDataExchange* exchange)
{
    CPropertyPage::DoDataExchange(exchange);
    for (number_field& field : fields_) field.exchange(exchange);
    for (std::size_t r = 0; r < row_count(); ++r) {
        const row_controls& ids = design_.rows[r];
        row_values& values = values_.rows[r];
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
    const int radius = at_resolution(::GetDeviceCaps(win32::window_dc{m_hWnd}.get(), LOGPIXELSX), knob_radius);
    for (row_windows& r : rows_) {  // each knob sets its range, 0..359, itself
        r.knob.SetEditMode(edit_mode::editable);
        r.knob.SetKnobRadius(radius);
        r.knob.SetEditStyle(ES_RIGHT);
    }
    stage_ = stage::in_use;
    const BOOL focus = CPropertyPage::OnInitDialog();
    const LRESULT font = SendMessage(WM_GETFONT);
    for (row_windows& r : rows_) {
        if (r.knob.m_hWnd) r.knob.SendMessage(WM_SETFONT, static_cast<WPARAM>(font), TRUE);
    }
    narrow_margins();
    narrow_labels();
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

void CZXPage::narrow_labels()
{
    // The label of a row is above its knob in z-order. It must not be wider than its text, or it cuts the ring.
    const win32::window_dc dc{m_hWnd};
    const win32::selected_object font{dc.get(), reinterpret_cast<HFONT>(SendMessage(WM_GETFONT))};
    for (const row_controls& ids : design_.rows) {
        const CWnd& label = *GetDlgItem(static_cast<int>(ids.label));
        wchar_t text[32];
        const int length = label.GetWindowText(text, static_cast<int>(std::size(text)));
        SIZE size{};
        CRect place;
        label.GetWindowRect(place);
        if (!::GetTextExtentPoint32(dc.get(), text, length, &size) || size.cx >= place.Width()) continue;
        ::SetWindowPos(label.m_hWnd, nullptr, 0, 0, size.cx, place.Height(),
                       SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
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
        rows_[r].knob.SetWheelSize(values_.rows[r].angle_step);
    }
}

BOOL CZXPage::OnSetActive()
{
    // The knobs fill their background with the button colour, which differs from the texture of a tab page.
    ::EnableThemeDialogTexture(m_hWnd, ETDT_DISABLE);
    LoadFromTags();
    return TRUE;  // the base class would refill the controls even if nothing changed
}

BOOL CZXPage::OnKillActive()
{
    const BOOL accepted = CPropertyPage::OnKillActive();
    show_numbers();
    return accepted;
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

number_field* CZXPage::field_of(UINT id)
{
    const auto found = std::find_if(fields_.begin(), fields_.end(), [&](const auto& one) { return one.id() == id; });
    return found == fields_.end() ? nullptr : &*found;
}

void CZXPage::OnEditChange(UINT id)
{
    if (stage_ != stage::in_use) return;
    number_field* const field = field_of(id);
    if (!field || !field->take_typed(::GetDlgItem(m_hWnd, static_cast<int>(id)))) return;
    UpdateData(TRUE);
    for (std::size_t r = 0; r < row_count(); ++r) {
        if (id == design_.rows[r].step)
            return current::link->write_float(coefficient_of(r).modulus_step, values_.rows[r].modulus_step);
        if (id == design_.rows[r].modulus) return store_typed_modulus_of(r);
    }
}

/// A handler that refuses the number throws and has given the tag another value.
void CZXPage::store_typed_modulus_of(std::size_t row)
{
    panel_link& link = *current::link;
    const char* const key = coefficient_of(row).modulus;
    const float& shown = values_.rows[row].modulus;
    const float typed = shown;
    link.write_float(key, typed);
    try {
        link.call(on_change);
    } catch (...) {
        const float kept = link.read_float(key).value_or(typed);
        if (kept == typed || shown != typed) throw;  // not refused, or shown already
        const UINT id = design_.rows[row].modulus;
        field_of(id)->refuse(::GetDlgItem(m_hWnd, static_cast<int>(id)));
        if (shown != kept) {  // the start of the text was a number
            link.write_float(key, shown);
            link.call(on_change);
        }
        throw;
    }
}

void CZXPage::OnEditEntered(UINT id)
{
    number_field* const field = field_of(id);
    if (!field) return;
    field->enter();
    // A selection from the end to the start shows the first digits of a number that is cut.
    const HWND edit = ::GetDlgItem(m_hWnd, static_cast<int>(id));
    const int length = ::GetWindowTextLength(edit);
    if (::SendMessage(edit, EM_GETSEL, 0, 0) == MAKELONG(0, length))
        ::SendMessage(edit, EM_SETSEL, static_cast<WPARAM>(length), 0);
}

void CZXPage::OnEditLeft(UINT id)
{
    if (field_of(id)) show_numbers();
}

void CZXPage::show_numbers()
{
    const auto shows_none = [&](const number_field& field) {
        const HWND edit = ::GetDlgItem(m_hWnd, static_cast<int>(field.id()));
        return edit && !field.has_number(edit);
    };
    if (stage_ == stage::in_use && std::any_of(fields_.begin(), fields_.end(), shows_none)) UpdateData(FALSE);
}

LRESULT CZXPage::OnEditColour(WPARAM dc, LPARAM edit)
{
    const auto id = static_cast<UINT>(::GetDlgCtrlID(reinterpret_cast<HWND>(edit)));
    const number_field* const field = field_of(id);
    if (!field || !field->wrong()) return Default();
    ::SetTextColor(reinterpret_cast<HDC>(dc), wrong_text);
    ::SetBkColor(reinterpret_cast<HDC>(dc), wrong_background);
    return reinterpret_cast<LRESULT>(static_cast<HBRUSH>(wrong_brush_));
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
    try {
        current::link->call(on_change);
    } catch (...) {
        LoadFromTags();  // a handler that refuses the number has put back the tag
        throw;
    }
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
    if (tips_ && tips_->m_hWnd) tips_->Pop();  // it has the former angle, and it may cover the knob
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
