// Pictures per second while the A1 knob of the real panel is dragged, on square waves shown in a window of 900 pixels.
// Needs Windows, or Wine with a display. Arguments: sizes, by default 512, 1024, 2048 and 4096.
//
// The mouse moves 125 times a second. Each line has the pictures per second; the longest time from a movement to the
// end of what it caused on the window's thread, and the 99 % quantile of these; the processor time of a picture; the
// mean cost of each step in real time; the longest waits of the mouse over the picture while that of full resolution,
// the first diffractogram and the picture after Apply are computed; and the time of closing while full resolution is.
#include "host/windows/panel_program.h"

#include <commctrl.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>
#include <random>
#include <vector>

#include "host/correction/multiply_spectrum.h"
#include "host/engine/library.h"
#include "host/windows/resource.h"
#include "lens/electron.h"

namespace {

using namespace zentrix::host;
constexpr int basic_page = 1, modulus_field_id = 5088, knob_id = 5004;
constexpr double step = 0.02;  // turns, enough for another pixel on the rim of the knob and so another angle
constexpr microscope scope{300, 0.05, {}, false};

image_ref noise(std::uint32_t size)
{
    const std::uint32_t sizes[] = {size, size};
    auto wave = image::create("noise", 3, sizes);
    std::mt19937 random{1};
    std::normal_distribution<float> normal{0, 0.3F};
    auto* const pixels = static_cast<std::complex<float>*>(wave->data());
    std::generate_n(pixels, wave->count(), [&] { return std::complex<float>{1 + normal(random), normal(random)}; });
    return wave;
}

/// Drags the knob with simulated mouse messages on its rim.
class knob_drag
{
  public:
    explicit knob_drag(HWND panel)
    {
        const HWND sheet = FindWindowExW(panel, nullptr, L"#32770", nullptr);
        SendMessageW(sheet, PSM_SETCURSEL, basic_page, 0);
        const auto page = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
        SetWindowTextA(GetDlgItem(page, modulus_field_id), "14");
        knob_ = GetDlgItem(page, knob_id);
        GetClientRect(knob_, &client_);
    }
    void send(UINT message, double turns) const
    {
        const double angle = 6.283185307179586 * turns, reach = 0.4 * client_.right;
        const auto x = std::lround(client_.right / 2 + reach * std::cos(angle));
        const auto y = std::lround(client_.bottom / 2 - reach * std::sin(angle));
        SendMessageW(knob_, message, MK_LBUTTON, MAKELPARAM(x, y));
    }
    int degrees() const { return static_cast<int>(SendMessageW(knob_, TBM_GETPOS, 0, 0)); }

  private:
    HWND knob_;
    RECT client_;
};

/// The picture in the window must be that of the wave corrected for A1 = 14 nm at the knob's angle.
void check(engine& host, const image_ref& wave, panel_program& program, display_mode mode, int degrees)
{
    const int width = static_cast<int>(wave->size(0)), height = static_cast<int>(wave->size(1));
    zentrix::lens::optics setup;
    setup.wavelength_nm = zentrix::lens::electron_wavelength(scope.kilovolts);
    setup.pixel_nm = scope.pixel_nm;
    setup.lens[zentrix::lens::coefficient::A1] = {14, static_cast<double>(degrees)};
    const auto expected = wave->clone();
    multiply_spectrum(host, expected,
                      zentrix::lens::arguments_for(setup, width, height, zentrix::lens::direction::remove));
    picture painted;
    paint_picture({*expected, mode, palette::grey, sampled_limits(*expected, mode)}, painted);
    const std::size_t bytes = wave->count() * sizeof(std::complex<float>);
    if (std::memcmp(expected->data(), program.handler().result()->data(), bytes) == 0 &&
        painted.bytes == program.wave_window().shown().bytes)
        return;
    std::fprintf(stderr, "wrong result: the panel shows another picture than that of the correction\n");
    std::exit(1);
}

/// Processor time of this process so far, all threads together; other programs hardly change it.
double processor_seconds()
{
    FILETIME ignored, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &ignored, &ignored, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {  // units of 100 ns
        return 1e-7 * static_cast<double>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    };
    return seconds(kernel) + seconds(user);
}

/// Makes the picture as large as the window's client area without the status line.
void resize_picture(image_window& shown, LONG side)
{
    RECT window, client;
    GetWindowRect(shown.handle(), &window);
    GetClientRect(shown.handle(), &client);
    SetWindowPos(shown.handle(), nullptr, 0, 0, window.right - window.left - client.right + side,
                 window.bottom - window.top - client.bottom + side + shown.height_below_picture(),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

using clock = std::chrono::steady_clock;
double milliseconds(clock::duration time) { return std::chrono::duration<double, std::milli>(time).count(); }

constexpr auto interval = std::chrono::milliseconds{8};  // between movements of the mouse

/// Handles messages until a time.
void handle_messages_until(panel_program& program, clock::time_point due)
{
    for (auto now = clock::now(); now < due; now = clock::now()) {
        const auto rest = std::chrono::ceil<std::chrono::milliseconds>(due - now).count();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(rest), QS_ALLINPUT);
        program.handle_waiting_messages();
    }
}

/// Begins something and moves the mouse over the picture until `window` shows its result. Returns the longest wait
/// [ms].
double longest_wait(panel_program& program, image_window& window, const std::function<void()>& begin)
{
    const HWND moved = program.wave_window().handle();
    auto start = clock::now();
    begin();
    program.handle_waiting_messages();
    double longest = milliseconds(clock::now() - start);
    for (int x = 0; !window.is_refined(); ++x) {
        handle_messages_until(program, start += interval);
        SendMessageW(moved, WM_MOUSEMOVE, 0, MAKELPARAM(100 + x % 100, 100));
        program.handle_waiting_messages();
        longest = std::max(longest, milliseconds(clock::now() - start));
        start = std::max(start, clock::now() - interval);
    }
    return longest;
}

struct waits_at_rest
{
    double full, diffractogram, apply;  ///< [ms]
};

waits_at_rest measure_rest(panel_program& program, const std::function<void()>& release)
{
    image_window& wave = program.wave_window();
    const auto command = [&](UINT item) { SendMessageW(wave.handle(), WM_COMMAND, item, 0); };
    waits_at_rest waits{};
    waits.full = longest_wait(program, wave, release);
    command(IDM_DIFFRACTOGRAM);  // makes the window
    waits.diffractogram =
        longest_wait(program, *program.diffractogram_window(), [&] { program.diffractogram_window()->refresh(); });
    command(IDM_DIFFRACTOGRAM);  // hides it
    const HWND apply = GetDlgItem(program.frame().content(), IDOK);
    waits.apply = longest_wait(program, wave, [&] { SendMessageW(apply, BM_CLICK, 0, 0); });
    command(IDM_UNDO);
    return waits;
}

/// Moves the knob 125 times a second for three seconds. Returns the waits of the movements [ms], in ascending order.
std::vector<double> drag_for_three_seconds(panel_program& program, const knob_drag& knob, int& moves)
{
    std::vector<double> waits;
    const auto start = clock::now();
    for (auto due = start; due < start + std::chrono::seconds{3}; due += interval) {
        handle_messages_until(program, due);
        knob.send(WM_MOUSEMOVE, step * ++moves);
        program.handle_waiting_messages();
        waits.push_back(milliseconds(clock::now() - due));
        due = std::max(due, clock::now() - interval);  // the mouse sends one movement for all that were missed
    }
    std::sort(waits.begin(), waits.end());
    return waits;
}

/// Turns the knob while the picture of full resolution is computed, and closes. Returns the time of closing [ms].
double close_while_computing(std::optional<panel_program>& program)
{
    program->handler().pictures().request({.full = true});
    Sleep(20);
    const auto start = clock::now();
    program.reset();
    return milliseconds(clock::now() - start);
}

void drag(engine& host, const image_ref& wave, display_mode shown, const char* name)
{
    panel_program_options options;
    options.title = name;
    options.start.shown = shown;
    options.quit_after_ms = 0;  // no message boxes; the timer starts in `run` only
    std::optional<panel_program> program;
    program.emplace(host, wave, scope, options);
    program->show();
    resize_picture(program->wave_window(), 900);
    const knob_drag knob{program->frame().content()};
    program->handle_waiting_messages();
    knob.send(WM_LBUTTONDOWN, 0);
    int moves = 0;
    for (int i = 0; i < 5; ++i) {
        knob.send(WM_MOUSEMOVE, step * ++moves);
        program->handle_waiting_messages();
    }
    check(host, wave, *program, shown, knob.degrees());
    const int drawn = program->wave_window().spent().drawn;
    const double processor_before = processor_seconds();
    const auto waits = drag_for_three_seconds(*program, knob, moves);
    const int pictures = program->wave_window().spent().drawn - drawn;
    const double processor = (processor_seconds() - processor_before) / std::max(pictures, 1);
    const auto at_rest = measure_rest(*program, [&] { knob.send(WM_LBUTTONUP, step * moves); });
    const std::string costs = program->costs();
    check(host, wave, *program, shown, knob.degrees());
    const double closing = close_while_computing(program);
    std::printf(
        "%4u %-8s %5.1f pictures a second, longest wait %3.0f ms (99 %%: %3.0f), %4.1f ms of processor time; %s; "
        "longest wait at rest %.0f ms, for the diffractogram %.0f, for Apply %.0f; closed in %.0f ms\n",
        wave->size(0), name, pictures / 3.0, waits.back(), waits[waits.size() * 99 / 100], 1000 * processor,
        costs.c_str(), at_rest.full, at_rest.diffractogram, at_rest.apply, closing);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    engine_options options;
    options.file_exists = [](const std::string&) { return true; };
    engine host{options};
    library zentrix{host, ZENTRIX_LIBRARY_FILE};
    std::vector<int> sizes;
    for (int i = 1; i < argc; ++i) sizes.push_back(std::atoi(argv[i]));
    if (sizes.empty()) sizes = {512, 1024, 2048, 4096};
    for (const int size : sizes) {
        const auto wave = noise(static_cast<std::uint32_t>(size));
        drag(host, wave, display_mode::modulus, "modulus");
        drag(host, wave, display_mode::log_modulus, "log");
        drag(host, wave, display_mode::phase, "phase");
    }
}
