// Undo and redo with the keys Ctrl+Z and Ctrl+Y.
#include "tests/windows/at_the_panel.h"

#include "host/parameters/json_file.h"
#include "host/windows/resource.h"

namespace windows_tests {
namespace {

class undoing : public at_the_panel
{
  protected:
    void undo() { type_key('Z', true); }
    void redo() { type_key('Y', true); }
    void focus_wave() { SetForegroundWindow(program_->wave_window().handle()); }
    /// Types into a field with real keys.
    void type_keys(control field, const char* keys)
    {
        SetForegroundWindow(program_->frame().handle());
        SetFocus(field.window);
        field.send(EM_SETSEL, 0, -1);
        for (; *keys; ++keys) type_key(static_cast<WORD>(*keys));
    }
};

TEST_F(undoing, TypingIntoOneFieldIsOneStep)
{
    start();
    EXPECT_EQ(item(IDM_UNDO) + " " + item(IDM_REDO), "(grey) &Undo\tCtrl+Z (grey) &Redo\tCtrl+Y");
    type_keys(of_page(1, 5088), "125");
    EXPECT_EQ(item(IDM_UNDO), "&Undo A1\tCtrl+Z");
    type_keys(of_page(1, 5092), "40");
    EXPECT_EQ(item(IDM_UNDO), "&Undo B2\tCtrl+Z");
    focus_wave();
    undo();
    EXPECT_TRUE(equals_command({"--A1", "125"}));
    EXPECT_EQ(of_page(1, 5092).text(), "0");
    undo();
    EXPECT_TRUE(equals_command({}));
    EXPECT_EQ(item(IDM_UNDO) + " " + item(IDM_REDO), "(grey) &Undo\tCtrl+Z &Redo A1\tCtrl+Y");
    undo();
    redo();
    EXPECT_TRUE(equals_command({"--A1", "125"}));
    redo();
    EXPECT_TRUE(equals_command({"--A1", "125", "--B2", "40"}));
    redo();
    EXPECT_EQ(logged().back(), "tag AngS5 = 0") << "without an alert";
}

TEST_F(undoing, TheFieldTakesBackItsTypingFirst)
{
    start();
    of_page(0, 5003).type("7");
    type_keys(of_page(0, 5003), "5");
    EXPECT_TRUE(equals_command({"--C1", "5"}));
    undo();
    EXPECT_TRUE(equals_command({"--C1", "7"}));
    EXPECT_EQ(GetFocus(), of_page(0, 5003).window);
    undo();
    EXPECT_TRUE(equals_command({}));
}

TEST_F(undoing, EachDragOfAKnobIsOneStep)
{
    start();
    of_page(1, 5088).type("12");
    SetForegroundWindow(program_->frame().handle());
    const control knob = of_page(1, 5004);
    const auto drag = [&](std::initializer_list<POINT> way) {
        DWORD button = MOUSEEVENTF_LEFTDOWN;
        for (const POINT by : way) {
            POINT to{knob.client().right / 2 + by.x, knob.client().bottom / 2 - by.y};
            ClientToScreen(knob.window, &to);
            SetCursorPos(to.x, to.y);
            mouse_event(button, 0, 0, 0, 0);
            for (int i = 0; i < 5; ++i) settle();
            button = 0;
        }
        mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
        for (int i = 0; i < 5; ++i) settle();
    };
    drag({{12, 0}, {12, 12}, {0, 14}});
    drag({{0, 14}, {-14, 14}, {-14, 0}});
    EXPECT_EQ(knob.send(TBM_GETPOS), 180);
    EXPECT_EQ(item(IDM_UNDO), "&Undo A1 angle\tCtrl+Z");
    for (const int expected : {90, 0}) {
        focus_wave();
        undo();
        EXPECT_EQ(knob.send(TBM_GETPOS), expected);
    }
    EXPECT_EQ(item(IDM_UNDO), "&Undo A1\tCtrl+Z");
}

TEST_F(undoing, ApplyIsTakenBackToTheBit)
{
    start(51, 38);
    std::vector<std::vector<complex>> results{result()};
    for (const char* typed : {"-20", "35", "8"}) {
        of_page(0, 5003).type(typed);
        results.push_back(result());
        of_panel(1).send(BM_CLICK);  // Apply
        settle();
        results.push_back(result());
        EXPECT_EQ(item(IDM_UNDO), "&Undo Apply\tCtrl+Z");
    }
    focus_wave();
    for (std::size_t i = results.size() - 1; i-- > 0;) {
        undo();
        EXPECT_TRUE(support::same_bytes(result(), results[i])) << i;
    }
    EXPECT_EQ(program_->handler().applied().size(), 0u);
    for (std::size_t i = 1; i < results.size(); ++i) {
        redo();
        EXPECT_TRUE(support::same_bytes(result(), results[i])) << i;
    }
    EXPECT_EQ(program_->handler().applied().size(), 3u);

    undo();
    engine_.faults().plan({fault_point::call, 0, "void ImageDataChanged( ImageRef )"});
    redo();
    EXPECT_THROW(result(), script_error);
    engine_.faults().clear();
    undo();
    EXPECT_TRUE(support::same_bytes(result(), results.end()[-2])) << "a failed Apply can be taken back";
    redo();
    EXPECT_TRUE(support::same_bytes(result(), results.back()));
}

TEST_F(undoing, TheRecordOfAWaveNamesOneCommandAgainAfterAnUndoneApply)
{
    start();
    of_page(0, 5003).type("-20");
    of_panel(1).send(BM_CLICK);  // Apply
    settle();
    const auto record_of_saved = [this](const std::string& name) {
        choose(IDM_SAVE, (name + ".npy").c_str());
        return read_json(bench_ / (name + ".json"));
    };
    EXPECT_EQ(record_of_saved("applied")["applied_before"].size(), 1u);
    focus_wave();
    undo();
    const auto record = record_of_saved("undone");
    EXPECT_FALSE(record.contains("applied_before")) << record;
    EXPECT_EQ(record["command"][1], "correct") << record;
    EXPECT_TRUE(equals_command({"--C1", "-20"}));
}

TEST_F(undoing, LoadedParametersSettingsAndTooLargeNumbersAreStepsToo)
{
    start();
    bench_.folder().write("lens.json", R"({"kv": 80, "A1": [3.5, 10], "C1": -9})");
    choose(IDM_LOAD_PARAMETERS, "lens.json");
    EXPECT_EQ(item(IDM_UNDO), "&Undo load\tCtrl+Z");
    of_page(0, 5003).type("3e38");
    of_page(0, 5003).type("4");
    EXPECT_TRUE(equals_command({"--A1", "3.5@10", "--C1", "4"}, "wave.npy", "80"));
    focus_wave();
    undo();
    EXPECT_TRUE(equals_command({"--A1", "3.5@10", "--C1", "-9"}, "wave.npy", "80"));
    undo();
    EXPECT_TRUE(equals_command({}));
    {
        const answer other_voltage{[](HWND dialog) {
            SetDlgItemTextA(dialog, IDC_KILOVOLTS, "200");
            SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        }};
        type_key(VK_F3);
    }
    EXPECT_EQ(item(IDM_UNDO) + " " + item(IDM_REDO), "&Undo settings\tCtrl+Z (grey) &Redo\tCtrl+Y");
    of_page(1, 5092).type("40");
    undo();
    EXPECT_TRUE(equals_command({}, "wave.npy", "200"));
    undo();
    EXPECT_TRUE(equals_command({}));
}

TEST_F(undoing, F7OpensTheEstimate)
{
    start();
    focus_wave();
    type_key(VK_F7);
    ASSERT_TRUE(program_->estimates());
    EXPECT_TRUE(IsWindowVisible(program_->estimates()->handle()));
}

}  // namespace
}  // namespace windows_tests
