#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

#include "host/parameters/edit_history.h"
#include "host/parameters/record.h"
#include "host/windows/coefficient_table.h"
#include "host/windows/conventions_window.h"
#include "host/windows/estimate_dialog.h"
#include "host/windows/floating_frame.h"
#include "host/windows/image_window.h"
#include "host/windows/panel_handler.h"

namespace zentrix::host {

struct panel_program_options
{
    std::string title;                           ///< of the wave window
    std::filesystem::path log;                   ///< empty: none
    std::filesystem::path screenshot;            ///< file for a picture of the panel; empty: none
    std::filesystem::path screenshot_of_all;     ///< file for a picture of panel and wave window; empty: none
    std::optional<unsigned> quit_after_ms = {};  ///< the program then shows no message boxes
    panel_start start = {};
    palette phase_palette = palette::grey;
    std::size_t not_finite = 0;  ///< pixels of the file's wave that were replaced because they are not finite
    std::optional<recorded_input> input = {};  ///< the file of the wave, for the records of results
    nlohmann::ordered_json program = {};       ///< see program_facts
};

/// The program with the library's control panel and a window that shows the corrected wave.
///
/// The log has a line, flushed at once, for each write of a tag ("tag ModA1 = 2.5"), each call of the handler ("call
/// OnChange") and each message to the user ("alert No such file.").
class panel_program : private panel_view
{
  public:
    /// Creates the windows, hidden, and passes a handler to the library.
    /// wave   as for live_correction
    /// scope  the initial settings
    /// Throws  std::runtime_error when the log cannot be written; script_error as floating_frame::show;
    ///         std::invalid_argument as panel_handler::make
    panel_program(engine& engine, const image_ref& wave, const microscope& scope, panel_program_options options);
    /// Closes all windows. The library releases the handler when it is shut down.
    ~panel_program() override;

    /// Shows the windows.
    void show();
    /// Shows the windows and runs the message loop until the user quits or options.quit_after_ms have passed.
    void run();
    void show_panel(bool shown);
    /// Handles all waiting messages. Returns false when the program is to quit.
    bool handle_waiting_messages();

    panel_handler& handler() { return *handler_; }
    image_window& wave_window() { return *wave_window_; }
    floating_frame& frame() { return *frame_; }
    /// Null until it is first shown.
    estimate_dialog* estimates() { return estimate_.get(); }
    /// Null until the transfer function is first shown.
    image_window* transfer_window() { return transfer_window_.get(); }

    /// Null until it is first shown.
    image_window* diffractogram_window() { return diffractogram_window_.get(); }
    /// Null until it is first shown.
    coefficient_table* table() { return table_.get(); }
    /// Null until it is first shown.
    conventions_window* conventions() { return conventions_.get(); }
    /// The last message in the status line; empty after the next edit.
    const std::string& said() const noexcept { return said_; }

    /// The cost of the pictures so far: "96 pictures, 42.1 ms each: transfer function 5.9, transform 16.2, shades 12.9,
    /// screen 7.1"
    std::string costs() const;

  private:
    static constexpr UINT_PTR screenshot_timer = 1, quit_timer = 2;  ///< of the wave window

    void pictures_changed() override;
    void show_mode(display_mode mode) override;
    void show_transfer_function(bool shown) override;
    std::optional<microscope> ask_microscope(const microscope& present) override;
    void panel_closed() override;

    void listen();
    void stop_listening();
    void make_windows(SIZE wave);
    void make_transfer_window();
    void toggle_diffractogram(bool of_display);
    void show_diffractogram(bool shown);
    void make_diffractogram_window();
    void choose_diffractogram();
    picture paint_profile(int width, int height, double letters) const;
    void place_windows();
    /// Gives the focus to the next of the windows that are shown (step 1) or to the one before (-1). A hidden panel is
    /// shown in its turn.
    void switch_window(int step);
    void dispatch(MSG& message);
    void send_to_picture_under_mouse(MSG& message) const;
    void command(unsigned id);
    void run_command(unsigned id);
    void colour_phases(bool coloured);
    void save();
    provenance provenance_of(const std::filesystem::path& result) const;
    void show_estimate_dialog();
    void accept_estimate(const estimate& found);

    /// Records the present state of the handler as an edit, if it differs from the last one.
    void note_edit();
    /// Makes an edit that is a step of its own with this name.
    void edit_as(const std::string& name, const std::function<void()>& edit);
    /// Undoes or redoes a step.
    void travel(bool back);
    void show_history();
    /// Ends the present step of the history at each press of the mouse button and when the keys go to another control.
    void follow_gesture(const MSG& message);
    void save_parameters();
    void load_parameters();
    /// Shows the parameters of a file or text as one step of the history.
    void show_parameters(const parameter_set& set, const std::string& step);
    void copy_parameters(unsigned id);
    void paste_parameters();

    void show_table(bool shown);
    void refresh_table();
    void show_conventions();
    void show_keys();
    void show_version();
    void start_timers();
    void take_screenshots();
    void log(const std::string& line);
    /// A failure: logs it and says it in the status line, or in a box if the user has just chosen the command that
    /// failed.
    void alert(const std::string& text);
    void say(const std::string& text);
    /// A box, unless the run is unattended; one at a time.
    void show_box(const std::string& text, UINT style);

    engine& engine_;
    panel_program_options options_;
    std::ofstream log_;
    listeners previous_;
    std::shared_ptr<panel_handler> handler_;
    SIZE size_{};  ///< initial client area of the wave window
    std::unique_ptr<image_window> wave_window_, transfer_window_, diffractogram_window_;
    bool diffractogram_of_display_ = false;
    std::unique_ptr<floating_frame> frame_;
    std::unique_ptr<estimate_dialog> estimate_;  ///< null until it is first shown
    win32::unique_key_table keys_;
    std::optional<edit_history<panel_state>> history_;  ///< null until the handler exists
    std::string edit_name_;  ///< of the edit that is being made; empty: named by what differs
    bool restoring_ = false;
    std::pair<UINT, HWND> gesture_{};                  ///< message and control of the last one
    std::unique_ptr<coefficient_table> table_;         ///< null until it is first shown
    std::unique_ptr<conventions_window> conventions_;  ///< null until it is first shown
    std::string said_;
    bool chosen_failed_ = false;  ///< while the failure of a menu command is reported
    bool boxed_ = false;          ///< while a box is open
};

}  // namespace zentrix::host
