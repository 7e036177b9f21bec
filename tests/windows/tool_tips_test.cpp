// The tooltips of the program's own windows and dialogs. Those of the library's panel: rounds_test.cpp.
#include "tests/windows/at_the_panel.h"

#include <gmock/gmock.h>

#include "host/text/encoding.h"
#include "host/windows/resource.h"

namespace windows_tests {
namespace {

/// The explanation of a control, or of the area with that number; empty: none.
std::string tip_of(HWND owner, UINT_PTR part)
{
    wchar_t text[600] = {};
    for (HWND tips = nullptr; !*text && (tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr));) {
        if (GetWindow(tips, GW_OWNER) != owner) continue;
        TTTOOLINFOW tool{};
        tool.cbSize = TTTOOLINFOW_V2_SIZE;
        tool.hwnd = owner;
        tool.uId = part;
        tool.lpszText = text;
        SendMessageW(tips, TTM_GETTEXTW, std::size(text), reinterpret_cast<LPARAM>(&tool));
    }
    return narrow(text);
}
std::string tip_of(HWND owner, HWND child) { return tip_of(owner, reinterpret_cast<UINT_PTR>(child)); }

/// Ids of the children without one, labels left out.
std::vector<int> unexplained(HWND owner)
{
    std::vector<int> ids;
    for (HWND child = GetWindow(owner, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if (control{child}.class_name() != "Static" && tip_of(owner, child).empty()) ids.push_back(GetDlgCtrlID(child));
    return ids;
}

TEST_F(at_the_panel, EveryControlOfTheProgramHasATooltip)
{
    start();
    const HWND wave = program_->wave_window().handle();
    for (const int item : {IDM_ESTIMATE, IDM_TABLE, IDM_DIFFRACTOGRAM})
        SendMessageW(wave, WM_COMMAND, static_cast<WPARAM>(item), 0);
    const HWND dialog = program_->estimates()->handle(), spectrum = program_->diffractogram_window()->handle();
    for (const HWND window : {wave, spectrum, program_->table()->handle(), dialog})
        EXPECT_EQ(unexplained(window), std::vector<int>{}) << control{window}.text();
    EXPECT_THAT(tip_of(dialog, GetDlgItem(dialog, IDC_FREE + 8)), testing::StartsWith("D4, three-lobe aberration\n"));
    EXPECT_THAT(tip_of(spectrum, 1), testing::HasSubstr("zeros (circles)"));
    EXPECT_THAT(tip_of(wave, 1), testing::HasSubstr("Drag one of these limits"));
    program_->wave_window().set_mode(display_mode::phase);
    program_->wave_window().set_phase_palette(palette::cyclic);
    EXPECT_EQ(tip_of(wave, 1), "") << "there is no histogram";

    SetActiveWindow(wave);
    std::vector<int> missing{-1};
    const answer look{[&](HWND settings) {
        if (!GetDlgItem(settings, IDC_KILOVOLTS)) return;
        missing = unexplained(settings);
        SendMessageW(settings, WM_COMMAND, IDCANCEL, 0);
    }};
    SendMessageW(wave, WM_COMMAND, IDM_MICROSCOPE, 0);
    EXPECT_EQ(missing, std::vector<int>{});
}

}  // namespace
}  // namespace windows_tests
