// Copied and pasted parameters, the table of coefficients, the window with the conventions.
#include "tests/windows/at_the_panel.h"

#include "host/windows/clipboard.h"
#include "host/windows/resource.h"
#include "lens/electron.h"

#include <sstream>

namespace windows_tests {
namespace {

class in_the_menus : public at_the_panel
{
  protected:
    HWND wave() { return program_->wave_window().handle(); }
    void choose_item(int id)
    {
        SendMessageW(wave(), WM_COMMAND, static_cast<WPARAM>(id), 0);
        settle();
    }
    std::string copied(int id)
    {
        choose_item(id);
        return pasted_text(wave());
    }
};

TEST_F(in_the_menus, EachDiffractogramIsShownAndHiddenByItsItem)
{
    start();
    const auto title = [this] {
        wchar_t text[100] = {};
        const auto* const made = program_->diffractogram_window();
        if (made && made->visible()) GetWindowTextW(made->handle(), text, static_cast<int>(std::size(text)));
        return std::wstring{text};
    };
    const std::pair<int, const wchar_t*> steps[] = {{IDM_DIFFRACTOGRAM_OF_DISPLAY, L"Diffractogram of the modulus"},
                                                    {IDM_DIFFRACTOGRAM, L"Diffractogram of the wave"},
                                                    {IDM_DIFFRACTOGRAM, L""},
                                                    {IDM_DIFFRACTOGRAM_OF_DISPLAY, L"Diffractogram of the modulus"},
                                                    {IDM_DIFFRACTOGRAM_OF_DISPLAY, L""}};
    for (const auto& [chosen, expected] : steps) {
        choose_item(chosen);
        EXPECT_EQ(title(), expected);
    }
}

TEST_F(in_the_menus, CopiedOptionsMakeTheSameWaveAndEveryTextCanBePasted)
{
    start();
    of_page(1, 5088).type("12.5");
    of_page(1, 5004).send(TBM_SETPOS, TRUE, 135);
    of_page(0, 5003).type("-3.3");
    settle();
    const auto shown_wave = result();
    const std::string options = copied(IDM_COPY_OPTIONS), object = copied(IDM_COPY_JSON);
    EXPECT_EQ(options, "--kv 300 --pixel 0.05 --C1 -3.3 --A1 12.5@135 --envelope off");
    EXPECT_EQ(program_->said(), "Copied: {");
    EXPECT_EQ(copied(IDM_COPY_PYTHON),
              "zentrix.correct(wave, kv=300, pixel=0.05, C1=-3.3, A1=(12.5, 135), envelope=\"off\")");
    EXPECT_TRUE(copied(IDM_COPY_SCRIPT).starts_with("ZXWTFMulDLL( spectrum, 0.00196874"));

    std::istringstream stream{options};
    const std::vector<std::string> words{std::istream_iterator<std::string>{stream}, {}};
    const auto done = bench_.zentrix(support::joined({"correct", "wave.npy", "-o", "again.npy"}, words));
    EXPECT_EQ(done.code, 0) << done.err;
    EXPECT_TRUE(support::same_bytes(shown_wave, support::pixels_of<complex>(bench_ / "again.npy")));

    for (const std::string& text : {options, object}) {
        of_page(0, 5003).type("7");
        of_page(1, 5092).type("9");
        copy_text(wave(), text);
        choose_item(IDM_PASTE);
        EXPECT_TRUE(support::same_bytes(result(), shown_wave)) << text;
        EXPECT_EQ(item(IDM_UNDO), "&Undo paste\tCtrl+Z");
    }
    copy_text(wave(), "--C1 -9 --A1 two");
    choose_item(IDM_PASTE);
    EXPECT_TRUE(support::same_bytes(result(), shown_wave)) << "as it was";
}

TEST_F(in_the_menus, TheTableFollowsTheKnobsAndMarksWhatMatters)
{
    start();
    SetForegroundWindow(wave());
    type_key(VK_F8);
    ASSERT_TRUE(program_->table());
    const auto row = [&](int index) {
        std::string text;
        for (int i = 0; i < coefficient_table::columns; ++i) text += (i ? "|" : "") + program_->table()->cell(index, i);
        return text;
    };
    EXPECT_EQ(row(0), "C1|0|nm||0.00|");
    of_page(0, 5003).type("-2");  // pi lambda C1 g^2 at 10 1/nm
    of_page(1, 5088).type("1");
    of_page(1, 5004).send(TBM_SETPOS, TRUE, 135);
    settle();
    EXPECT_EQ(row(0), "C1|-2|nm||1.24|yes");
    EXPECT_EQ(row(1), "A1|1|nm|135\u00b0|0.62|");
    EXPECT_EQ(row(5), "S3|0|\u00b5m|0\u00b0|0.00|");
    EXPECT_EQ(program_->table()->heading(),
              "Phase shift of each coefficient alone at the Nyquist frequency,\n"
              "10 1/nm (0.1 nm). Above \u03c0/4 it is visible.");
    SendMessageW(program_->table()->handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(program_->table()->visible());
}

TEST_F(in_the_menus, F1ShowsTheConventionsAndEscapeHidesThem)
{
    start();
    SetForegroundWindow(wave());
    type_key(VK_F1);
    ASSERT_TRUE(program_->conventions() && program_->conventions()->visible());
    SendMessageW(program_->conventions()->handle(), WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_FALSE(program_->conventions()->visible());
}

}  // namespace
}  // namespace windows_tests
