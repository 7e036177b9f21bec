#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "afx/afx.h"
#include "panel/number_field.h"
#include "panel/round_slider.h"
#include "panel/rules/load.h"
#include "panel/rules/tag_record.h"
#include "panel/tool_tips.h"

namespace qorv::panel {

/// Control ids of one row. The row of a round coefficient has a unit label instead of knob and angle spin.
struct row_controls
{
    UINT modulus, modulus_spin, step, knob, angle_spin, label;
    UINT unit = 0;
};

/// The properties in which pages differ.
struct page_design
{
    page_id page;
    UINT template_id;
    std::span<const row_controls> rows;
    std::span<const UINT> headers;
    int angle_spin_maximum;
};

/// A page of coefficients. It reads the tags each time it becomes the active page. Every edit is written to the tags at
/// once; a changed value is then announced to the handler by OnChange.
class CZXPage : public CPropertyPage
{
    DECLARE_MESSAGE_MAP()
  public:
    explicit CZXPage(const page_design& design);

    /// Copies changed tags into the controls and enables or disables the page.
    void LoadFromTags();
    /// Adds the page's controls to the tooltips, which must live as long as the page's window.
    void Explain(tool_tips& tips);

    BOOL OnInitDialog() override;
    BOOL OnSetActive() override;
    BOOL OnKillActive() override;

  protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result) override;
    void OnEditChange(UINT id);
    void OnEditEntered(UINT id);
    void OnEditLeft(UINT id);
    LRESULT OnEditColour(WPARAM dc, LPARAM edit);
    void OnDeltaPos(UINT id, NMHDR* header, LRESULT* result);
    void OnHScroll(UINT code, UINT position, CWnd* knob);

  private:
    /// State of the dialog's initialization. Edits are announced only when it is in use.
    enum class stage
    {
        before,
        filling,
        in_use
    };

    struct row_windows
    {
        CRoundSliderCtrl knob;
        CSpinButtonCtrl modulus_spin, angle_spin;
    };

    std::size_t row_count() const { return design_.rows.size(); }
    const coefficient& coefficient_of(std::size_t row) const { return rows_of(design_.page)[row]; }
    number_field* field_of(UINT id);
    std::string tip_of(UINT id) const;
    /// Fields that show no number show their values again.
    void show_numbers();
    void enable_page(bool enable);
    void set_accelerations();
    void narrow_margins();
    void narrow_labels();
    void set_spin_ranges();
    void store_typed_modulus_of(std::size_t row);
    void spin_modulus_of(std::size_t row, int delta);
    void spin_angle_of(std::size_t row, int delta);

    const page_design& design_;
    std::array<row_windows, most_rows> rows_;
    page_values values_;
    std::vector<number_field> fields_;  ///< refer to values_
    const CBrush wrong_brush_;
    tool_tips* tips_ = nullptr;  ///< the panel's, once it explains this page
    std::wstring tip_;
    bool enabled_ = true;
    stage stage_ = stage::before;
};

}  // namespace qorv::panel
