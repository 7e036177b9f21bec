// The diffractogram with its radial profile.
#include <algorithm>
#include <stdexcept>

#include "host/correction/contrast_plot.h"
#include "host/windows/panel_program.h"
#include "host/windows/resource.h"
#include "host/windows/screen_place.h"

namespace zentrix::host {

namespace {

constexpr int picture_side = 400;  // [pixels at 96 dots per inch]
constexpr double plot_letters = 15;
constexpr std::size_t profile_points = 800;

constexpr const char* displayed_names[] = {"real part", "imaginary part", "modulus", "logarithm", "phase"};

}  // namespace

/// Shows the diffractogram of the wave or of what the wave window displays. Hides it if just that is shown.
void panel_program::toggle_diffractogram(bool of_display)
{
    const bool visible = diffractogram_window_ && diffractogram_window_->visible();
    const bool same = diffractogram_of_display_ == of_display;
    diffractogram_of_display_ = of_display;
    choose_diffractogram();
    show_diffractogram(!visible || !same);
}

void panel_program::show_diffractogram(bool shown)
{
    if (shown && !diffractogram_window_) make_diffractogram_window();
    if (!diffractogram_window_) return;
    ShowWindow(diffractogram_window_->handle(), shown ? SW_SHOWNOACTIVATE : SW_HIDE);
    if (shown) diffractogram_window_->refresh();
    const auto check = [this](UINT item, bool checked) {
        CheckMenuItem(GetMenu(wave_window_->handle()), item, checked ? MF_CHECKED : MF_UNCHECKED);
    };
    check(IDM_DIFFRACTOGRAM, shown && !diffractogram_of_display_);
    check(IDM_DIFFRACTOGRAM_OF_DISPLAY, shown && diffractogram_of_display_);
}

void panel_program::make_diffractogram_window()
{
    const int side = screen_pixels(picture_side);
    diffractogram_window_ =
        std::make_unique<image_window>("", wave_window_->handle(), SIZE{side, side}, handler_->diffractograms());
    image_window& made = *diffractogram_window_;
    made.set_mode(display_mode::log_modulus);
    made.add_status_line({.pixel_nm = handler_->scope().pixel_nm, .is_spectrum = true});
    made.add_plot(plot_letters,
                  [this](int width, int height, double letters) { return paint_profile(width, height, letters); });
    made.on_close([this] { show_diffractogram(false); });
    choose_diffractogram();
    RECT frame, around{0, 0, side, side + made.height_below_picture()};
    GetWindowRect(frame_->handle(), &frame);
    AdjustWindowRect(&around, WS_OVERLAPPEDWINDOW, FALSE);
    SetWindowPos(made.handle(), nullptr, 0, 0, around.right - around.left, around.bottom - around.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    place_on_screen(made.handle(), {std::max(frame.right, frame.left + size_.cx / 2 + 16) + 12, frame.top});
}

/// Of the wave or of what the wave window displays.
void panel_program::choose_diffractogram()
{
    const display_mode shown = wave_window_->mode();
    handler_->diffractograms().set_displayed(diffractogram_of_display_ ? std::optional{shown} : std::nullopt);
    if (!diffractogram_window_) return;
    const std::string of = diffractogram_of_display_ ? displayed_names[static_cast<std::size_t>(shown)] : "wave";
    diffractogram_window_->set_title("Diffractogram of the " + of);
    diffractogram_window_->refresh();
}

picture panel_program::paint_profile(int width, int height, double letters) const
{
    const auto& pictures = handler_->diffractograms();
    const lens::optics setup = handler_->optics();
    const int size = std::max(pictures.width(), pictures.height());
    const double limit = 1 / (2 * setup.pixel_nm);
    lens::contrast_profile profile;
    try {
        // For single frequencies, see lens::transfer_value.
        const auto arguments = lens::arguments_for(setup, 2, 2, lens::direction::apply);
        profile = lens::profile_of(arguments, limit, profile_points, 2 * limit / size);
    } catch (const std::invalid_argument&) {  // "C1 is too large.": the handler says it
        profile = {limit, {0, 0}, {1, 1}, {}, 0, 0};
    }
    return picture_of_contrast(width, height, profile, limit, letters, pictures.profile());
}

}  // namespace zentrix::host
