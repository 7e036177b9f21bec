// The keyboard's way through the panel program, with keys that the system delivers.
#include "host/windows/panel_program.h"

#include "host/engine/library.h"
#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"
#include "tests/support/companion_package.h"
#include "tests/windows/page_tables.h"

#include <algorithm>
#include <functional>

namespace windows_tests {
namespace {

using namespace zentrix::host;

class at_the_keyboard : public testing::Test
{
  protected:
    at_the_keyboard()
        : engine_{support::with_companion_package()}, library_{std::in_place, engine_, ZENTRIX_LIBRARY_FILE}
    {
        support::write_wave(bench_ / "wave.npy", 16, 16, [](int, int) { return std::complex<float>{1}; });
        panel_program_options options;
        options.title = "wave.npy";
        options.log = bench_ / "log";
        options.quit_after_ms = 600000;  // no message boxes
        options.start.lens[zentrix::lens::coefficient::C1].modulus = -30;
        program_.emplace(engine_, read_npy(bench_ / "wave.npy"), microscope{300, 0.05, {}, false}, options);
        program_->show();
    }

    ~at_the_keyboard() override
    {
        program_.reset();
        library_.reset();
    }

    /// Handles messages until the condition holds. Machines may be slow, so the limit is generous.
    bool comes_true(const std::function<bool()>& condition)
    {
        for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < 20000; Sleep(2)) {
            program_->handle_waiting_messages();
            if (condition()) return true;
        }
        return false;
    }

    /// Presses and releases keys together, the last one last.
    static void press(std::initializer_list<WORD> keys)
    {
        std::vector<INPUT> strokes;
        const auto add = [&](WORD key, DWORD flags) {
            INPUT stroke{};
            stroke.type = INPUT_KEYBOARD;
            stroke.ki.wVk = key;
            const bool extended = key == VK_NEXT || key == VK_PRIOR;
            stroke.ki.dwFlags = flags | (extended ? KEYEVENTF_EXTENDEDKEY : 0);
            strokes.push_back(stroke);
        };
        for (const WORD key : keys) add(key, 0);
        for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) add(*key, KEYEVENTF_KEYUP);
        ASSERT_EQ(SendInput(static_cast<UINT>(strokes.size()), strokes.data(), sizeof(INPUT)), strokes.size());
    }

    HWND panel() { return program_->frame().content(); }
    HWND page() { return reinterpret_cast<HWND>(SendMessageW(sheet_of(panel()), PSM_GETCURRENTPAGEHWND, 0, 0)); }
    int page_index() { return static_cast<int>(SendDlgItemMessageW(sheet_of(panel()), 0x3020, TCM_GETCURSEL, 0, 0)); }

    /// The control with the focus: "value C1", "step C1", "knob A1", "angle A1", "tabs", "Display", "PCTF", "Apply",
    /// "wave".
    std::string focus()
    {
        const HWND at = GetFocus();
        if (at == program_->wave_window().handle()) return "wave";
        const std::pair<int, const char*> below[] = {{5111, "Display"}, {5100, "PCTF"}, {1, "Apply"}};
        for (const auto& [id, name] : below)
            if (at == GetDlgItem(panel(), id)) return name;
        if (at == GetDlgItem(sheet_of(panel()), 0x3020)) return "tabs";
        for (const row_table& row : pages[page_index()].rows) {
            const std::string name = row.knob ? row.key + 3 : row.key;
            if (at == GetDlgItem(page(), row.modulus)) return "value " + name;
            if (at == GetDlgItem(page(), row.step)) return "step " + name;
            if (row.knob && at == GetDlgItem(page(), row.knob)) return "knob " + name;
            if (row.knob && GetParent(at) == GetDlgItem(page(), row.knob)) return "angle " + name;
        }
        return "elsewhere";
    }

    testing::AssertionResult focus_reaches(const std::string& name)
    {
        if (comes_true([&] { return focus() == name; })) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "the focus is at " << focus() << " instead of " << name;
    }

    /// All stops of a page in the order of the Tab key. The page is in front of the tabs.
    static events route(const page_table& page)
    {
        events stops;
        for (const row_table& row : page.rows) {
            const std::string name = row.knob ? row.key + 3 : row.key;
            stops.insert(stops.end(), {"value " + name, "step " + name});
            if (row.knob) stops.insert(stops.end(), {"knob " + name, "angle " + name});
        }
        stops.insert(stops.end(), {"tabs", "Display", "PCTF", "Apply"});
        return stops;
    }

    std::string log() const { return bench_.folder().read("log"); }

    const support::workbench bench_;
    engine engine_;
    std::optional<library> library_;
    std::optional<panel_program> program_;
};

TEST_F(at_the_keyboard, TabGoesThroughEveryControlInBothDirections)
{
    ASSERT_TRUE(focus_reaches("value C1")) << "at the start";
    for (const page_table& one : pages) {
        SCOPED_TRACE(one.tab);
        ASSERT_TRUE(comes_true([&] { return page_index() == one.index; }));
        events stops = route(one);
        SetFocus(panel());
        ASSERT_TRUE(focus_reaches(stops[0]));
        for (std::size_t i = 1; i <= stops.size(); ++i) {
            press({VK_TAB});
            ASSERT_TRUE(focus_reaches(stops[i % stops.size()]));
        }
        std::reverse(stops.begin() + 1, stops.end());
        for (std::size_t i = 1; i <= stops.size(); ++i) {
            press({VK_SHIFT, VK_TAB});
            ASSERT_TRUE(focus_reaches(stops[i % stops.size()]));
        }
        press({VK_CONTROL, VK_TAB});
    }
    EXPECT_TRUE(comes_true([&] { return page_index() == 0; })) << "after the last page comes the first";
    EXPECT_EQ(log().find("tag "), std::string::npos) << "nothing was changed";
}

TEST_F(at_the_keyboard, PagesAreChangedFromTheControlsBelowThemToo)
{
    const std::pair<WORD, int> turns[] = {{VK_TAB, 1}, {VK_NEXT, 2}, {VK_PRIOR, 1}};
    for (const auto& [key, expected] : turns) {
        SetFocus(GetDlgItem(panel(), 5100));
        ASSERT_TRUE(focus_reaches("PCTF"));
        press({VK_CONTROL, key});
        EXPECT_TRUE(comes_true([&, wanted = expected] { return page_index() == wanted; })) << page_index();
    }
}

TEST_F(at_the_keyboard, F6GoesBetweenTheWaveAndTheControlThatWasUsedLast)
{
    ASSERT_TRUE(focus_reaches("value C1"));
    press({VK_TAB});
    ASSERT_TRUE(focus_reaches("step C1"));
    for (int i = 0; i < 2; ++i) {
        press({VK_F6});
        ASSERT_TRUE(focus_reaches("wave"));
        press({VK_F6});
        ASSERT_TRUE(focus_reaches("step C1"));
    }
    press({VK_F2});
    ASSERT_TRUE(comes_true([&] { return !program_->frame().visible(); }));
    press({VK_F6});
    EXPECT_TRUE(focus_reaches("step C1")) << "a hidden panel is shown";
    EXPECT_TRUE(program_->frame().visible());
}

TEST_F(at_the_keyboard, F6GoesThroughAllWindowsThatAreShown)
{
    ASSERT_TRUE(focus_reaches("value C1"));
    program_->handler().set_transfer_function(true);
    for (const WORD key : {VK_F9, VK_F8, VK_F1, VK_F7}) press({key});
    ASSERT_TRUE(comes_true([&] { return program_->estimates() && IsWindowVisible(program_->estimates()->handle()); }));
    const HWND around[] = {program_->wave_window().handle(),      program_->frame().handle(),
                           program_->transfer_window()->handle(), program_->diffractogram_window()->handle(),
                           program_->table()->handle(),           program_->conventions()->handle(),
                           program_->estimates()->handle()};
    const auto is_active = [](HWND window) { return [window] { return GetActiveWindow() == window; }; };
    ASSERT_TRUE(comes_true(is_active(around[6])));
    for (const HWND window : around) {
        press({VK_F6});
        ASSERT_TRUE(comes_true(is_active(window))) << window;
    }
    for (std::size_t i = 6; i-- > 4;) {
        press({VK_SHIFT, VK_F6});
        ASSERT_TRUE(comes_true(is_active(around[i]))) << i;
    }
    press({VK_DOWN});  // in the table
    EXPECT_TRUE(comes_true([] { return SendMessageW(GetFocus(), LVM_GETNEXTITEM, WPARAM(-1), LVNI_SELECTED) >= 0; }));
    press({VK_SHIFT, VK_F6});
    ASSERT_TRUE(comes_true(is_active(around[3])));
    press({'1'});  // one to one
    EXPECT_TRUE(comes_true([&] { return program_->diffractogram_window()->map().zoom() == 1; }));
}

TEST_F(at_the_keyboard, ReturnAndSpaceAfterTheStartChangeNothing)
{
    ASSERT_TRUE(focus_reaches("value C1"));
    press({VK_RETURN});
    press({VK_SPACE});
    press({VK_TAB});
    ASSERT_TRUE(focus_reaches("step C1"));
    EXPECT_EQ(log().find("OnApply"), std::string::npos) << log();
    EXPECT_EQ(program_->handler().coefficients()[zentrix::lens::coefficient::C1].modulus, -30);
}

TEST_F(at_the_keyboard, ADigitOnAKnobBeginsANewAngle)
{
    const auto A1 = zentrix::lens::coefficient::A1;
    const auto angle_is = [&](double degrees) {
        return [=, this] { return program_->handler().coefficients()[A1].angle_degrees == degrees; };
    };
    ASSERT_TRUE(focus_reaches("value C1"));
    press({VK_CONTROL, VK_NEXT});
    ASSERT_TRUE(comes_true([&] { return page_index() == 1; }));
    SetFocus(GetDlgItem(page(), 5004));
    press({'1'});
    ASSERT_TRUE(focus_reaches("angle A1"));
    for (const WORD key : {'2', '3'}) press({key});
    EXPECT_TRUE(comes_true(angle_is(123)));
    press({VK_SHIFT, VK_TAB});
    ASSERT_TRUE(focus_reaches("knob A1"));
    press({VK_RIGHT});
    EXPECT_TRUE(comes_true(angle_is(124)));
    press({VK_TAB});
    ASSERT_TRUE(focus_reaches("angle A1"));
    press({'9'});
    EXPECT_TRUE(comes_true(angle_is(9))) << "the text was selected";
}

}  // namespace
}  // namespace windows_tests
