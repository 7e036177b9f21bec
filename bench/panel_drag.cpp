// Pictures per second while the A1 knob of the real panel is dragged, on a wave of 1024 x 1024 shown in its window.
// Needs Windows, or Wine with a display.
#include "host/windows/panel_program.h"

#include <commctrl.h>

#include <cmath>
#include <complex>
#include <cstdlib>
#include <cstring>
#include <random>

#include "host/correction/multiply_spectrum.h"
#include "host/engine/library.h"
#include "lens/electron.h"

namespace {

using namespace zentrix::host;
constexpr int size = 1024, basic_page = 1, modulus_field_id = 5088, knob_id = 5004;
constexpr microscope scope{300, 0.05, {}, false};

image_ref noise()
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

void check_result(engine& host, const image_ref& wave, panel_program& program, int degrees)
{
    zentrix::lens::optics setup;
    setup.wavelength_nm = zentrix::lens::electron_wavelength(scope.kilovolts);
    setup.pixel_nm = scope.pixel_nm;
    setup.lens[zentrix::lens::coefficient::A1] = {14, static_cast<double>(degrees)};
    const auto expected = wave->clone();
    std::memcpy(expected->data(), wave->data(), wave->count() * sizeof(std::complex<float>));
    multiply_spectrum(host, expected,
                      zentrix::lens::arguments_for(setup, size, size, zentrix::lens::direction::remove));
    if (std::memcmp(expected->data(), program.handler().result()->data(),
                    wave->count() * sizeof(std::complex<float>)) == 0)
        return;
    std::fprintf(stderr, "wrong result: the panel shows another picture than the correction\n");
    std::exit(1);
}

void drag(engine& host, const image_ref& wave, display_mode shown, const char* name)
{
    panel_program_options options;
    options.title = name;
    options.start.shown = shown;
    options.quit_after_ms = 0;  // no message boxes; the timer starts in `run` only
    panel_program program{host, wave, scope, options};
    program.show();
    const knob_drag knob{program.frame().content()};
    program.handle_waiting_messages();
    knob.send(WM_LBUTTONDOWN, 0);
    using clock = std::chrono::steady_clock;
    const int before = program.handler().correction().spent().computed;
    const auto start = clock::now();
    int moves = 0;
    while (clock::now() - start < std::chrono::seconds{5}) {
        knob.send(WM_MOUSEMOVE, 0.003 * ++moves);
        program.handle_waiting_messages();
    }
    const double seconds = std::chrono::duration<double>(clock::now() - start).count();
    const int pictures = program.handler().correction().spent().computed - before;
    knob.send(WM_LBUTTONUP, 0.003 * moves);
    program.handle_waiting_messages();
    check_result(host, wave, program, knob.degrees());
    std::printf("%-10s %5.1f pictures a second, %.1f ns/px; %s\n", name, pictures / seconds,
                seconds * 1e9 / pictures / (double(size) * size), program.costs().c_str());
}

}  // namespace

int main()
{
    engine_options options;
    options.file_exists = [](const std::string&) { return true; };
    engine host{options};
    library zentrix{host, ZENTRIX_LIBRARY_FILE};
    const auto wave = noise();
    drag(host, wave, display_mode::modulus, "modulus");
    drag(host, wave, display_mode::log_modulus, "log");
    drag(host, wave, display_mode::phase, "phase");
}
