// The picture of the panel program must equal the result of "zentrix correct".
#include "tests/windows/at_the_panel.h"

#include "host/parameters/json_file.h"
#include "host/windows/clipboard.h"
#include "host/windows/resource.h"

#include <algorithm>
#include <numbers>

namespace windows_tests {
namespace {

TEST_F(at_the_panel, ThePictureFollowsADragAndEqualsTheCommandsResult)
{
    start();
    of_page(1, 5088).type("12.5");
    EXPECT_EQ(logged(), (events{"tag ModA1 = 12.5", "call OnChange"}));

    SetForegroundWindow(program_->frame().handle());
    const control knob = of_page(1, 5004);
    const auto at = [&](int right, int up) {
        POINT to{knob.client().right / 2 + right, knob.client().bottom / 2 - up};
        ClientToScreen(knob.window, &to);
        return to;
    };
    real_mouse(at(12, 0), MOUSEEVENTF_LEFTDOWN);
    for (const POINT to : {at(12, 12), at(0, 14), at(-14, 14)}) {
        const auto before = shown();
        real_mouse(to);
        EXPECT_NE(shown(), before);
    }
    real_mouse(at(-14, 14), MOUSEEVENTF_LEFTUP);
    EXPECT_EQ(logged(), (events{"tag AngA1 = 45", "call OnChange", "tag AngA1 = 90", "call OnChange", "tag AngA1 = 135",
                                "call OnChange"}));
    EXPECT_TRUE(equals_command({"--A1", "12.5@135"}));
}

/// All rows together, on an odd and an even size.
TEST_F(at_the_panel, EveryCoefficientIsCorrected)
{
    start(51, 38);
    std::vector<std::string> options;
    for (const page_table& one : pages) {
        for (const row_table& row : one.rows) {
            const std::string name = row.knob ? std::string{row.key}.substr(3) : row.key;
            const std::string modulus = one.index == 4 ? "2" : name == "C3" ? "0.25" : "3.25";
            of_page(one.index, row.modulus).type(modulus);
            options.insert(options.end(), {"--" + name, modulus});
            if (!row.knob) continue;
            of_page(one.index, row.knob).send(TBM_SETPOS, TRUE, 7 * row.knob % 360);
            options.back() += "@" + std::to_string(7 * row.knob % 360);
            settle();
        }
    }
    EXPECT_TRUE(equals_command(options));
}

TEST_F(at_the_panel, OfManyQuickEditsTheLastIsShown)
{
    start(600, 500);
    const control field = of_page(0, 5003);
    shown();
    const int computed = program_->handler().pictures().spent().computed;
    for (int typed = 1; typed <= 50; ++typed) SetWindowTextA(field.window, std::to_string(typed).c_str());
    settle();
    shown();
    EXPECT_LE(program_->handler().pictures().spent().computed, computed + 51) << "at most one for each request";
    EXPECT_TRUE(equals_command({"--C1", "50"}));
}

TEST_F(at_the_panel, ApplyMakesTheResultTheSourceAndClearsTheCoefficients)
{
    start();
    of_page(0, 5003).type("-20");
    of_page(1, 5088).type("5");
    of_page(1, 5004).send(TBM_SETPOS, TRUE, 30);
    logged();
    const auto first = result();
    write_npy(bench_ / "first.npy", *program_->handler().result());
    of_panel(1).send(BM_CLICK);
    EXPECT_EQ(logged().front(), "call OnApply");
    EXPECT_EQ(of_page(1, 5088).text() + of_page(0, 5003).text(), "00");
    EXPECT_EQ(of_page(1, 5004).send(TBM_GETPOS), 0);
    EXPECT_LT(support::largest_difference(result(), first), 1e-6);
    of_page(1, 5092).type("40");
    EXPECT_TRUE(equals_command({"--B2", "40"}, "first.npy"));
}

TEST_F(at_the_panel, ShowsTheSelectedDisplay)
{
    start();
    const char* const names[] = {"Real", "Imaginary", "Modulus", "Log of Modulus", "Phase"};
    for (int entry = 0; entry < 5; ++entry) {
        choose_display(panel(), entry);
        const auto mode = std::to_string(entry + 1);
        EXPECT_EQ(logged(), (events{"tag DisplayMode = " + mode, "call OnChangeDisplay " + mode}));
        EXPECT_EQ(control{program_->wave_window().handle()}.text(), std::string{"wave.npy - "} + names[entry]);
        EXPECT_EQ(shown(), in_a_file(static_cast<display_mode>(entry), palette::grey));
    }
    for (const auto expected : {palette::cyclic, palette::grey}) {
        press(program_->wave_window().handle(), VK_F4);
        EXPECT_EQ(shown(), in_a_file(display_mode::phase, expected));
    }
    EXPECT_EQ(logged(), events{});
}

TEST_F(at_the_panel, ShowsThePhaseContrastTransferFunction)
{
    start();
    of_page(0, 5003).type("-30");
    of_panel(5100).send(BM_CLICK);
    EXPECT_EQ(logged(), (events{"tag C1 = -30", "call OnChange", "call OnPCTF", "tag hasPCTF = 1"}));
    ASSERT_TRUE(program_->transfer_window() && program_->transfer_window()->visible());
    const auto& picture = program_->transfer_window()->shown();
    // sin(pi lambda C1 g^2) at 300 kV, along a row from the zero frequency in the centre.
    const double wavelength = 0.0019687489006848795;
    for (int k = 0; k < 32; ++k) {
        const double g = k / (64 * 0.05), value = std::sin(std::numbers::pi * wavelength * -30 * g * g);
        EXPECT_NEAR(picture.bytes[24 * 64 + 32 + k], 127.5 + 127.5 * value, 1) << k;
    }
    SendMessageW(program_->transfer_window()->handle(), WM_CLOSE, 0, 0);
    EXPECT_EQ(logged(), events{"tag hasPCTF = 0"});
    EXPECT_EQ(of_panel(5100).send(BM_GETCHECK), BST_UNCHECKED);
    of_panel(5100).send(BM_CLICK);
    program_->show_panel(false);
    EXPECT_EQ(logged(), (events{"call OnPCTF", "tag hasPCTF = 1", "call OnClose", "tag hasPCTF = 0"}));
    EXPECT_FALSE(program_->transfer_window()->visible());
}

TEST_F(at_the_panel, TheSettingsDialogAcceptsPlausibleNumbersOnly)
{
    start();
    of_page(0, 5003).type("-30");
    logged();
    const auto type = [](HWND dialog, int field, const char* text, WPARAM button) {
        SetDlgItemTextA(dialog, field, text);
        SendMessageW(dialog, WM_COMMAND, button, 0);
    };
    {
        const answer cancelled{[&](HWND dialog) { type(dialog, IDC_KILOVOLTS, "80", IDCANCEL); }};
        of_panel(5099).send(BM_CLICK);
        EXPECT_EQ(logged(), events{"call OnPreferences"});
        EXPECT_TRUE(equals_command({"--C1", "-30"})) << "the previous settings are kept";
    }
    const struct
    {
        int field;
        const char *typed, *problem;
    } refused[] = {
        {IDC_KILOVOLTS, "abc", "The accelerating voltage is not a number."},
        {IDC_KILOVOLTS, "1,2.3", "The accelerating voltage is not a number."},
        {IDC_KILOVOLTS, "300000", "300000 kV: are these volts? kv is in kilovolts, 300 for 300,000 V."},
        {IDC_KILOVOLTS, "0", "The accelerating voltage must be a positive number of kilovolts."},
        {IDC_PIXEL, "2e-11", "The pixel size is 2e-11 nm: are these metres? pixel is in nanometres."},
        {IDC_PIXEL, "-5", "The pixel size must be a positive number of nanometres."},
        {IDC_VIBRATION, "-1", "The vibration must not be negative."},
    };
    std::size_t next = 0;
    const answer one_after_another{[&](HWND dialog) {
        if (next == std::size(refused)) {
            type(dialog, IDC_KILOVOLTS, " 80,5 ", IDOK);
            return;
        }
        const auto& [field, typed, problem] = refused[next++];
        const std::string former = control{GetDlgItem(dialog, field)}.text();
        type(dialog, field, typed, IDOK);
        EXPECT_EQ(control{GetDlgItem(dialog, IDC_PROBLEM)}.text(), problem);
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, field));
        SetDlgItemTextA(dialog, field, former.c_str());
    }};
    SetForegroundWindow(program_->wave_window().handle());
    type_key(VK_F3);
    EXPECT_EQ(next, std::size(refused));
    EXPECT_TRUE(equals_command({"--C1", "-30"}, "wave.npy", "80.5"));
}

TEST_F(at_the_panel, SavesTheCorrectedWave)
{
    start();
    of_page(1, 5092).type("50");
    of_page(0, 5003).type("-3.3");
    choose(IDM_SAVE, "saved.npy");
    EXPECT_TRUE(equals_command({"--B2", "50", "--C1", "-3.3"}));
    const auto saved = support::pixels_of<complex>(bench_ / "saved.npy");
    EXPECT_TRUE(support::same_bytes(saved, result()));

    const auto record = read_json(bench_ / "saved.json");
    EXPECT_EQ(record["input"]["name"], "wave.npy");
    const auto command = record["command"].get<std::vector<std::string>>();
    std::filesystem::remove(bench_ / "saved.npy");
    const auto again = bench_.zentrix(std::vector<std::string>{command.begin() + 1, command.end()});
    EXPECT_EQ(again.code, 0) << again.err;
    EXPECT_TRUE(support::same_bytes(support::pixels_of<complex>(bench_ / "saved.npy"), saved));

    of_panel(1).send(BM_CLICK);  // Apply
    choose(IDM_SAVE, "twice.npy");
    EXPECT_EQ(read_json(bench_ / "twice.json")["applied_before"][0]["C1"]["value"], -3.3);
}

TEST_F(at_the_panel, SavesAndLoadsParameters)
{
    start();
    of_page(1, 5088).type("12.5");
    of_page(1, 5004).send(TBM_SETPOS, TRUE, 135);
    of_page(0, 5003).type("-30");
    choose(IDM_SAVE_PARAMETERS, "lens.json");
    of_page(1, 5088).type("1");
    of_page(1, 5092).type("9");
    logged();
    choose(IDM_LOAD_PARAMETERS, "lens.json");
    EXPECT_EQ(of_page(1, 5088).text() + " " + of_page(1, 5092).text() + " " + of_page(0, 5003).text(), "12.5 0 -30");
    EXPECT_EQ(of_page(1, 5004).send(TBM_GETPOS), 135);
    EXPECT_TRUE(equals_command({"--A1", "12.5@135", "--C1", "-30"}));

    bench_.folder().write("other.json", R"({"kv": 80, "A1": [3.5, -10.4], "envelope": "off"})");
    logged();
    choose(IDM_LOAD_PARAMETERS, "other.json");
    EXPECT_EQ(logged().back(), "alert The panel has whole degrees. These angles were rounded: A1.");
    EXPECT_EQ(of_page(1, 5004).send(TBM_GETPOS), 350);
    EXPECT_TRUE(equals_command({"--A1", "3.5@-10"}, "wave.npy", "80"));

    const struct
    {
        const char *text, *problem;
    } refused[] = {{R"({"C1": "x"})", R"(bad.json: C1 is a number in nm, not "x")"},
                   {R"({"C1": 1e60})", "C1 is too large for the panel."},
                   {R"({"C1": 3e38})", "C1 is too large."},
                   {R"({"wavelength": 500})", "The panel needs the accelerating voltage (kv) and not the wavelength."},
                   {R"({"tilt": [0, 1]})", "The panel has no beam tilt (tilt)."}};
    for (const auto& [text, problem] : refused) {
        bench_.folder().write("bad.json", text);
        choose(IDM_LOAD_PARAMETERS, "bad.json");
        const auto lines = logged();
        EXPECT_EQ(std::ranges::count_if(lines, [&](const auto& line) { return line.ends_with(problem); }), 1) << text;
        EXPECT_TRUE(equals_command({"--A1", "3.5@-10"}, "wave.npy", "80")) << "as it was";
    }
}

TEST_F(at_the_panel, HidesShowsAndHandlesKeys)
{
    start();
    SendMessageW(program_->frame().handle(), WM_CLOSE, 0, 0);
    EXPECT_EQ(logged(), events{"call OnClose"});
    EXPECT_FALSE(program_->frame().visible());
    press(program_->wave_window().handle(), VK_F2);
    EXPECT_TRUE(program_->frame().visible());
    EXPECT_TRUE(IsWindowVisible(panel()));
    EXPECT_EQ(logged(), events{}) << "nothing is announced";

    const control first = of_page(1, 5088), step = of_page(1, 5090);
    SetForegroundWindow(program_->frame().handle());
    SetFocus(first.window);
    press(first.window, VK_TAB);
    EXPECT_EQ(GetFocus(), step.window);
    press(step.window, VK_ESCAPE);
    press(step.window, VK_RETURN);
    EXPECT_TRUE(IsWindowVisible(panel()) && IsWindowVisible(step.window)) << "neither key closes the panel";
    press(step.window, VK_F2);
    EXPECT_FALSE(program_->frame().visible());
}

TEST_F(at_the_panel, AFailedCorrectionIsReportedOnceAndNeitherShownAppliedNorSaved)
{
    start();
    const auto before = shown();
    engine_.faults().plan({fault_point::call, 0, "void ImageDataChanged( ImageRef )"});
    of_page(0, 5003).type("-30");
    for (int i = 0; i < 300 && program_->said().empty(); ++i) settle();
    engine_.faults().clear();
    const char* const alert = "alert This host call was made to fail.";
    const auto lines = logged();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), alert), 1);
    EXPECT_EQ(shown(), before);
    of_panel(1).send(BM_CLICK);
    EXPECT_EQ(logged(), (events{"call OnApply", alert}));
    EXPECT_EQ(of_page(0, 5003).text(), "-30");
    EXPECT_THROW(result(), script_error);
    of_page(0, 5003).type("-31");
    EXPECT_TRUE(equals_command({"--C1", "-31"}));
}

TEST_F(at_the_panel, SaysWhatFailsWhileTypingAndShowsABoxForACommandOnly)
{
    start(64, 48, std::nullopt);
    int boxes = 0;
    const answer ok{[&](HWND box) {
        EXPECT_EQ(control{box}.text(), "Zentrix");
        EXPECT_FALSE(IsWindowEnabled(program_->frame().handle()));
        if (++boxes == 1) SetWindowTextA(of_page(0, 5003).window, "-3e38");  // fails under the open box
        SendMessageW(box, WM_COMMAND, IDOK, 0);
    }};
    of_page(0, 5003).type("3e38");
    EXPECT_EQ(logged(), (events{"tag C1 = 3e+38", "call OnChange", "tag C1 = 0", "alert C1 is too large."}));
    EXPECT_EQ(program_->said() + item(IDM_UNDO), "C1 is too large.(grey) &Undo\tCtrl+Z");
    EXPECT_TRUE(equals_command({}));
    of_page(0, 5003).type("3");
    EXPECT_EQ(program_->said() + std::to_string(boxes), "0");
    copy_text(panel(), "an old friend");
    SendMessageW(program_->wave_window().handle(), WM_COMMAND, IDM_PASTE, 0);
    EXPECT_EQ(boxes, 1);
    EXPECT_TRUE(IsWindowEnabled(program_->frame().handle()));
    EXPECT_EQ(program_->said(), "C1 is too large.");
}

TEST_F(at_the_panel, QuitsInTimeWhileADialogIsOpen)
{
    start(64, 48, 300);
    PostMessageW(program_->wave_window().handle(), WM_COMMAND, IDM_MICROSCOPE, 0);
    program_->run();  // the test hangs if it does not quit
    EXPECT_TRUE(equals_command({}));
}

TEST(PanelCommand, WritesLogAndPicturesOfAnyNameAndQuits)
{
    const support::workbench bench;
    support::write_wave(bench / "wave.npy", 40, 30, wave_at);
    std::filesystem::rename(bench / "wave.npy", bench.folder() / "" / u8"w\u00e9ll\u00e9 \u03bb.npy");
    const auto name = [](const char8_t* text) { return std::string{reinterpret_cast<const char*>(text)}; };
    for (const char* milliseconds : {"1500", "1"}) {
        const auto done = bench.zentrix({"panel", name(u8"w\u00e9ll\u00e9 \u03bb.npy"), "--kv", "300", "--pixel",
                                         "0.05", "--log", name(u8"\u00f6.log"), "--screenshot", "panel.png",
                                         "--screenshot-of-all", "all.png", "--quit-after", milliseconds});
        EXPECT_EQ(done.code, 0) << done.err;
        EXPECT_EQ(done.err, "");
        EXPECT_NE(done.out.find(" pictures, "), std::string::npos) << done.out;
        for (const auto& file : {bench / "panel.png", bench / "all.png", bench.folder() / "" / u8"\u00f6.log"})
            EXPECT_TRUE(std::filesystem::remove(file)) << file;
    }
}

}  // namespace
}  // namespace windows_tests
