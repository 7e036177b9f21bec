// Microscope > Estimate: the search runs while the windows stay usable; its result is in the panel's tags.
#include <gtest/gtest.h>

#include <cmath>

#include "host/engine/library.h"
#include "host/windows/panel_program.h"
#include "host/windows/resource.h"
#include "host/windows/screenshot.h"
#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"
#include "tests/windows/control.h"

namespace windows_tests {
namespace {

using namespace zentrix::host;

constexpr int size = 192;

/// A phase object without symmetry.
std::complex<float> specimen_at(int x, int y)
{
    double phase = 0;
    for (int i = 0; i < 60; ++i) {
        const double dx = x - (i * 37 + i * i * 11) % size, dy = y - (i * 53 + i * i * 7) % size;
        phase += 0.9 * std::exp(-(dx * dx + dy * dy) / (2 * (1.2 + 0.05 * (i % 9))));
    }
    return std::complex<float>{std::polar(1.0, phase)};
}

class Estimate : public testing::Test
{
  protected:
    Estimate() : library_{std::in_place, engine_, ZENTRIX_LIBRARY_FILE}
    {
        support::write_wave(bench_ / "wave.npy", size, size, specimen_at);
        bench_.zentrix("aberrate wave.npy -o seen.npy --kv 300 --pixel 0.05 --C1 -40 --A1 9@30");
        panel_program_options options;
        options.quit_after_ms = 600000;
        program_.emplace(engine_, read_npy(bench_ / "seen.npy"), microscope{300, 0.05, {}, false}, options);
        program_->show();
        program_->handle_waiting_messages();
    }
    ~Estimate() override
    {
        program_.reset();
        library_.reset();
        EXPECT_EQ(engine_.report().text(), "");
    }

    /// Opens the dialog and calls `act` with it every 50 ms until it is closed.
    template <class Act>
    void with_dialog(Act act)
    {
        static std::function<void(HWND)> next;
        next = act;
        const auto timer = SetTimer(nullptr, 0, 50, [](HWND, UINT, UINT_PTR, DWORD) {
            const control active{GetActiveWindow()};
            if (active.class_name() == "#32770" && active.visible()) next(active.window);
        });
        SendMessageW(program_->wave_window().handle(), WM_COMMAND, IDM_ESTIMATE, 0);
        KillTimer(nullptr, timer);
        next = nullptr;
    }
    static std::string text_in(HWND dialog) { return control{GetDlgItem(dialog, IDC_ESTIMATE_TEXT)}.text(); }
    static void press(HWND dialog, int button) { SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0); }
    static void tick_only(HWND dialog, std::initializer_list<zentrix::lens::coefficient> wanted)
    {
        for (const auto& about : zentrix::lens::all_coefficients)
            CheckDlgButton(dialog, IDC_FREE + static_cast<int>(about.which),
                           std::ranges::find(wanted, about.which) == wanted.end() ? BST_UNCHECKED : BST_CHECKED);
    }

    zentrix::lens::polar of_panel(zentrix::lens::coefficient which)
    {
        return program_->handler().coefficients()[which];
    }

    support::workbench bench_;
    engine engine_;
    std::optional<library> library_;
    std::optional<panel_program> program_;
};

using zentrix::lens::coefficient;

TEST_F(Estimate, ResultIsInTheKnobsAndCanBeTakenBack)
{
    int pictures_while_searching = 0;
    bool started = false;
    std::string said;
    with_dialog([&](HWND dialog) {
        if (!started) {
            tick_only(dialog, {coefficient::C1, coefficient::A1});
            started = true;
            press(dialog, IDOK);
            return;
        }
        said = text_in(dialog);
        if (said == "Searching ...") {
            ++pictures_while_searching;
            program_->wave_window().shown();
            return;
        }
        write_png(bench_ / "dialog.png", picture_of_screen({dialog}));
        press(dialog, IDCANCEL);
    });
    EXPECT_NE(said.find("starts agree"), std::string::npos) << said;
    EXPECT_GT(pictures_while_searching, 0);
    EXPECT_NEAR(of_panel(coefficient::C1).modulus, -40, 0.3);
    EXPECT_NEAR(of_panel(coefficient::A1).modulus, 9, 0.3);
    EXPECT_NEAR(of_panel(coefficient::A1).angle_degrees, 30, 1.5);
    SendMessageW(program_->wave_window().handle(), WM_COMMAND, IDM_UNDO_ESTIMATE, 0);
    EXPECT_EQ(of_panel(coefficient::C1).modulus, 0);
    EXPECT_EQ(of_panel(coefficient::A1).modulus, 0);
}

TEST_F(Estimate, CanBeStoppedAndLeavesThePanelAsItWas)
{
    int calls = 0;
    std::string said;
    with_dialog([&](HWND dialog) {
        said = text_in(dialog);
        if (++calls == 1)
            press(dialog, IDOK);
        else if (said == "Searching ...")
            press(dialog, IDCANCEL);  // stops
        else
            press(dialog, IDCANCEL);  // closes
    });
    EXPECT_EQ(said, "Stopped. The coefficients stay as they are.");
    EXPECT_EQ(of_panel(coefficient::C1).modulus, 0);
}

}  // namespace
}  // namespace windows_tests
