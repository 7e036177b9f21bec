#pragma once

#include "host/engine/library.h"
#include "host/windows/panel_program.h"
#include "tests/host/program/pictures.h"
#include "tests/host/program/run.h"
#include "tests/support/companion_package.h"
#include "tests/support/same_bytes.h"
#include "tests/windows/control.h"
#include "tests/windows/page_tables.h"

#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The panel program: the built library in the real host, with the wave window.
namespace windows_tests {

using namespace zentrix::host;
using complex = std::complex<float>;

/// A crystal of two periods with an edge, so that no part of the spectrum is empty.
inline complex wave_at(int x, int y)
{
    const double phase = 0.4 * std::cos(0.7 * x) + 0.3 * std::cos(0.5 * x + 0.9 * y) + (x > 20 ? 0.5 : 0.0);
    return complex{std::polar(1.0 + 0.1 * std::sin(0.3 * y), phase)};
}

/// Operates dialogs of this thread from a timer in their own message loop.
class answer
{
  public:
    /// act  called with a visible dialog, repeatedly until it is closed
    explicit answer(std::function<void(HWND dialog)> act) : timer_{SetTimer(nullptr, 0, 20, &answer::look)}
    {
        act_ = std::move(act);
    }
    ~answer()
    {
        KillTimer(nullptr, timer_);
        act_ = nullptr;
    }
    answer(const answer&) = delete;
    answer& operator=(const answer&) = delete;

  private:
    static void CALLBACK look(HWND, UINT, UINT_PTR, DWORD)
    {
        const control active{GetActiveWindow()};
        if (active.class_name() == "#32770" && active.visible()) act_(active.window);
    }

    static inline std::function<void(HWND)> act_;
    UINT_PTR timer_;
};

class at_the_panel : public testing::Test
{
  protected:
    at_the_panel() : engine_{support::with_companion_package()}, library_{std::in_place, engine_, ZENTRIX_LIBRARY_FILE}
    {}

    ~at_the_panel() override
    {
        program_.reset();
        library_.reset();
        EXPECT_EQ(engine_.report().text(), "");
    }

    void start(int width = 64, int height = 48, std::optional<unsigned> quit_after_ms = 600000)
    {
        support::write_wave(bench_ / "wave.npy", width, height, wave_at);
        panel_program_options options;
        options.title = "wave.npy";
        options.log = bench_ / "log";
        options.quit_after_ms = quit_after_ms;  // if set, no message boxes are shown
        options.input = recorded_input{"wave.npy", fingerprint_of(bench_ / "wave.npy")};
        program_.emplace(engine_, read_npy(bench_ / "wave.npy"), microscope{300, 0.05, {}, false}, options);
        program_->show();
        settle();
        EXPECT_EQ(logged(), events{"call OnChange"});
    }

    /// Handles all messages, those that follow from painting included.
    void settle()
    {
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(program_->handle_waiting_messages());
            Sleep(5);
        }
    }

    /// The lines of the log since the last call.
    events logged()
    {
        settle();
        const std::string all = bench_.folder().read("log");
        events lines;
        for (std::size_t end; (end = all.find('\n', log_read_)) != std::string::npos; log_read_ = end + 1)
            lines.push_back(all.substr(log_read_, end - log_read_));
        return lines;
    }

    HWND panel() { return program_->frame().content(); }
    control of_panel(int id) { return {GetDlgItem(panel(), id)}; }
    control of_page(int index, int id) { return {GetDlgItem(page_of(panel(), index), id)}; }

    void press(HWND window, WPARAM key)
    {
        PostMessageW(window, WM_KEYDOWN, key, 1);
        PostMessageW(window, WM_KEYUP, key, 1);
        settle();
    }

    /// Presses a key of the real keyboard, with Control if wanted. The foreground window must be one of the program.
    void type_key(WORD key, bool control = false)
    {
        std::vector<INPUT> inputs;
        const auto add = [&](WORD which, DWORD flags) {
            INPUT one{};
            one.type = INPUT_KEYBOARD;
            one.ki.wVk = which;
            one.ki.dwFlags = flags;
            inputs.push_back(one);
        };
        if (control) add(VK_CONTROL, 0);
        add(key, 0);
        add(key, KEYEVENTF_KEYUP);
        if (control) add(VK_CONTROL, KEYEVENTF_KEYUP);
        EXPECT_EQ(SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)), inputs.size());
        for (int i = 0; i < 5; ++i) settle();
    }

    /// The text of a menu item, "(grey) " in front of it if it cannot be chosen.
    std::string item(int id)
    {
        const HMENU menu = GetMenu(program_->wave_window().handle());
        char text[100] = {};
        GetMenuStringA(menu, static_cast<UINT>(id), text, sizeof text, MF_BYCOMMAND);
        const bool grey = (GetMenuState(menu, static_cast<UINT>(id), MF_BYCOMMAND) & MF_GRAYED) != 0;
        return (grey ? "(grey) " : "") + std::string{text};
    }

    /// The corrected wave of the program.
    std::vector<complex> result()
    {
        const auto& image = program_->handler().result();
        const auto* const begin = static_cast<const complex*>(image->data());
        return {begin, begin + image->count()};
    }

    /// Compares the corrected wave with the result of "zentrix correct" for a file.
    testing::AssertionResult equals_command(const std::vector<std::string>& options, const char* wave = "wave.npy",
                                            const char* kilovolts = "300")
    {
        const auto done = bench_.zentrix(
            support::joined({"correct", wave, "-o", "out.npy", "--kv", kilovolts, "--pixel", "0.05"}, options));
        EXPECT_EQ(done.code, 0) << done.err;
        return support::same_bytes(result(), support::pixels_of<complex>(bench_ / "out.npy"));
    }

    /// Chooses a menu item that asks for a file, and answers with its name.
    void choose(int item, const char* file)
    {
        const answer with_name{[&](HWND dialog) {
            const LRESULT name = SendDlgItemMessageW(dialog, 0x47c, CBEM_GETEDITCONTROL, 0, 0);
            SetWindowTextW(reinterpret_cast<HWND>(name), (bench_ / file).wstring().c_str());
            SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        }};
        SendMessageW(program_->wave_window().handle(), WM_COMMAND, static_cast<WPARAM>(item), 0);
        settle();
    }

    std::vector<std::uint8_t> shown() { return program_->wave_window().shown().bytes; }

    /// The bytes of the picture that a file of the corrected wave would show.
    std::vector<std::uint8_t> in_a_file(display_mode mode, palette shades)
    {
        const image& wave = *program_->handler().result();
        picture painted;
        paint_picture({wave, mode, shades, limits_of(wave, mode)}, painted);
        return painted.bytes;
    }

    const support::workbench bench_;
    engine engine_;
    std::optional<library> library_;
    std::optional<panel_program> program_;
    std::size_t log_read_ = 0;
};

}  // namespace windows_tests
