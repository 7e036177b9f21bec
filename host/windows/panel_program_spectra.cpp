// The diffractogram with its radial profile.
#include <algorithm>
#include <stdexcept>

#include "host/correction/contrast_plot.h"
#include "host/windows/panel_program.h"
#include "host/windows/resource.h"

namespace zentrix::host {

namespace {

constexpr LONG picture_side = 400;  // [screen pixels]
constexpr double plot_letters = 15;
constexpr std::size_t profile_points = 800;

constexpr const char* displayed_names[] = {"real part", "imaginary part", "modulus", "logarithm", "phase"};

}  // namespace

void panel_program::show_diffractogram(bool shown)
{
    if (shown && !diffractogram_window_) make_diffractogram_window();
    if (!diffractogram_window_) return;
    ShowWindow(diffractogram_window_->handle(), shown ? SW_SHOWNOACTIVATE : SW_HIDE);
    if (shown) diffractogram_window_->refresh();
    CheckMenuItem(GetMenu(wave_window_->handle()), IDM_DIFFRACTOGRAM, shown ? MF_CHECKED : MF_UNCHECKED);
}

void panel_program::make_diffractogram_window()
{
    diffractogram_window_ = std::make_unique<image_window>("", wave_window_->handle(), SIZE{picture_side, picture_side},
                                                           handler_->diffractograms());
    image_window& made = *diffractogram_window_;
    made.set_mode(display_mode::log_modulus);
    made.add_status_line({.pixel_nm = handler_->scope().pixel_nm, .is_spectrum = true});
    made.add_plot(plot_letters,
                  [this](int width, int height, double letters) { return paint_profile(width, height, letters); });
    made.on_close([this] { show_diffractogram(false); });
    choose_diffractogram();
    RECT frame, around{0, 0, picture_side, picture_side + made.height_below_picture()};
    GetWindowRect(frame_->handle(), &frame);
    AdjustWindowRect(&around, WS_OVERLAPPEDWINDOW, FALSE);
    SetWindowPos(made.handle(), nullptr, std::max(frame.right, frame.left + size_.cx / 2 + 16) + 12, frame.top,
                 around.right - around.left, around.bottom - around.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

/// Of the wave or of what the wave window displays.
void panel_program::choose_diffractogram()
{
    CheckMenuItem(GetMenu(wave_window_->handle()), IDM_DIFFRACTOGRAM_OF_DISPLAY,
                  diffractogram_of_display_ ? MF_CHECKED : MF_UNCHECKED);
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
