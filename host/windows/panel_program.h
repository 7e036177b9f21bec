#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

#include "host/windows/floating_frame.h"
#include "host/windows/image_window.h"
#include "host/windows/panel_handler.h"

namespace zentrix::host {

struct panel_program_options
{
    std::string title;                        ///< of the wave's window
    std::filesystem::path log;                ///< empty: none
    std::filesystem::path screenshot;         ///< of the panel once it is painted; empty: none
    std::filesystem::path screenshot_of_all;  ///< of the panel and the wave's window; empty: none
    std::optional<unsigned> quit_after_ms = {};
    panel_start start = {};
    palette phase_palette = palette::grey;
};

/// The library's control panel beside a window with the wave that it corrects.
///
/// The log has a line, flushed at once, for each write of a tag ("tag ModA1 = 2.5"), each call of the handler ("call
/// OnChange") and each message to the user ("alert No such file.").
class panel_program : private panel_view
{
  public:
    /// `wave` as live_correction takes it. The handler is given to the library.
    /// Throws  std::runtime_error when the log cannot be written; script_error as floating_frame::show;
    ///         std::invalid_argument as panel_handler::make
    panel_program(engine& engine, const image_ref& wave, const microscope& scope, panel_program_options options);
    /// Closes all windows. The library lets go of the handler when it is shut down.
    ~panel_program() override;

    /// Shows the windows.
    void show();
    /// The same, then works until the user quits or the time is over.
    void run();
    void show_panel(bool shown);
    /// Deals with the messages that are waiting; false when it is time to quit.
    bool work_off_messages();

    panel_handler& handler() { return *handler_; }
    image_window& wave_window() { return *wave_window_; }
    floating_frame& frame() { return *frame_; }
    /// Null until the transfer function is first shown; then shown or hidden.
    image_window* transfer_window() { return transfer_window_.get(); }

    /// "96 pictures, 42.1 ms each: transfer function 5.9, transform 16.2, shades 12.9, screen 7.1"
    std::string costs() const;

  private:
    void pictures_changed() override;
    void show_mode(display_mode mode) override;
    void show_transfer_function(bool shown) override;
    std::optional<microscope> ask_microscope(const microscope& present) override;
    void panel_closed() override;

    void listen();
    void stop_listening();
    void make_windows();
    void make_transfer_window();
    void place_windows();
    void dispatch(MSG& message);
    void command(unsigned id);
    void colour_phases(bool coloured);
    void save();
    void start_timers();
    void take_screenshots();
    void log(const std::string& line);
    void alert(const std::string& text);

    engine& engine_;
    panel_program_options options_;
    std::ofstream log_;
    listeners former_;
    std::shared_ptr<panel_handler> handler_;
    SIZE size_;
    std::unique_ptr<image_window> wave_window_, transfer_window_;
    std::unique_ptr<floating_frame> frame_;
    HACCEL keys_ = nullptr;
    bool alerting_ = false;
};

}  // namespace zentrix::host
