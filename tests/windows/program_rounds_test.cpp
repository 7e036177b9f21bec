// The panel program is started, used in many ways, and ended. Nothing may be left. By hand, for longer:
//     ZENTRIX_ROUNDS=1000 tools/under-wine build/windows/tests/windows_tests.exe --gtest_filter=*LeaveNothingBehind
#include "tests/windows/at_the_panel.h"
#include "tests/windows/holdings.h"

#include "host/windows/resource.h"

namespace windows_tests {
namespace {

class many_programs : public at_the_panel
{
  protected:
    HWND wave() { return program_->wave_window().handle(); }
    void handle_messages() { EXPECT_TRUE(program_->handle_waiting_messages()); }
    void choose_item(int id)
    {
        SendMessageW(wave(), WM_COMMAND, static_cast<WPARAM>(id), 0);
        handle_messages();
    }

    void edit_coefficients()
    {
        of_page(0, 5003).type("-20");
        of_page(1, 5088).type("5");
        of_page(1, 5004).send(TBM_SETPOS, TRUE, 30);
        handle_messages();
        of_page(3, 5069).type("1e99");
        of_panel(1).send(BM_CLICK);  // Apply
        handle_messages();
        choose_item(IDM_UNDO);
        choose_item(IDM_UNDO);
        choose_item(IDM_REDO);
        EXPECT_EQ(of_page(1, 5004).send(TBM_GETPOS), 30);
        of_page(0, 5003).type("3e38");
        EXPECT_EQ(program_->said(), "C1 is too large.");
        of_page(0, 5003).type("-20");
    }

    void look_at_the_wave()
    {
        for (int entry = 4; entry >= 0; --entry) choose_display(panel(), entry);
        choose_display(panel(), 4);
        choose_item(IDM_PHASE_COLOURS);
        choose_item(IDM_PHASE_COLOURS);
        const control window{wave()};
        for (const int key : {int{'1'}, VK_ADD, VK_LEFT, VK_SUBTRACT, int{'F'}, int{'B'}, int{'B'}, int{'H'}, int{'H'}})
            window.key(static_cast<WPARAM>(key));
        window.send(WM_KEYDOWN, VK_SPACE);
        handle_messages();
        window.send(WM_KEYUP, VK_SPACE);
        window.send(WM_SETCURSOR, reinterpret_cast<WPARAM>(wave()), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        const int bottom = window.client().bottom - program_->wave_window().height_below_picture() + 10;
        window.mouse(WM_LBUTTONDOWN, 100, bottom);  // in the histogram
        window.mouse(WM_MOUSEMOVE, 120, bottom);
        window.mouse(WM_LBUTTONUP, 120, bottom);
        window.key('A');
        SetWindowPos(wave(), nullptr, 0, 0, 500, 400, SWP_NOMOVE | SWP_NOZORDER);
        shown();
    }

    void open_other_windows()
    {
        for (const int id : {IDM_DIFFRACTOGRAM, IDM_DIFFRACTOGRAM_OF_DISPLAY, IDM_TABLE, IDM_CONVENTIONS})
            choose_item(id);
        of_panel(5100).send(BM_CLICK);
        handle_messages();
        program_->transfer_window()->shown();
        program_->diffractogram_window()->shown();
        EXPECT_TRUE(program_->table()->visible() && program_->conventions()->visible());
        program_->show_panel(false);
        program_->show_panel(true);
    }

    void copy_and_ask()
    {
        for (const int id : {IDM_COPY_OPTIONS, IDM_COPY_PYTHON, IDM_COPY_SCRIPT, IDM_COPY_JSON}) choose_item(id);
        EXPECT_EQ(program_->said(), "Copied: {");
        choose_item(IDM_PASTE);
        const answer cancelled{[](HWND dialog) { SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0); }};
        choose_item(IDM_MICROSCOPE);
    }

    void start_and_stop_a_search()
    {
        choose_item(IDM_ESTIMATE);
        const HWND dialog = program_->estimates()->handle();
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        handle_messages();
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        while (control{GetDlgItem(dialog, IDC_ESTIMATE_TEXT)}.text() == "Searching ...") Sleep(5), handle_messages();
    }

    void live()
    {
        log_read_ = 0;
        library_.emplace(engine_, ZENTRIX_LIBRARY_FILE);
        start(96, 64);
        edit_coefficients();
        look_at_the_wave();
        open_other_windows();
        copy_and_ask();
        start_and_stop_a_search();
        program_.reset();
        pump();
        library_.reset();
        engine_.records().clear();
    }
};

TEST_F(many_programs, LeaveNothingBehind)
{
    library_.reset();
    expect_flat([this] { live(); }, 1);
}

}  // namespace
}  // namespace windows_tests
