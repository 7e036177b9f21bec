#include "host/windows/panel_program.h"
#include "host/windows/resource.h"
#include "host/windows/screen_place.h"

namespace zentrix::host {

namespace {

constexpr int inset = 32;  // of the conventions from the wave window [pixels at 96 dots per inch]

// No tabs: in a message box, columns would depend on the widths of the keys.
constexpr char keys_text[] =
    "F1: conventions of units, angles and signs\n"
    "F2: show or hide the panel\n"
    "F3: settings of the microscope\n"
    "F4: phase in colours\n"
    "F6, Shift+F6: to the next window, to the one before\n"
    "F7: estimate the aberrations\n"
    "F8: table of all coefficients\n"
    "F9, Shift+F9: diffractogram of the wave, of the display\n"
    "Ctrl+S: save the corrected wave\n"
    "Ctrl+O, Ctrl+E: load and save parameters\n"
    "Ctrl+Z, Ctrl+Y: undo and redo\n"
    "Ctrl+Shift+C: copy the parameters as options of the command line\n"
    "Ctrl+Shift+V: paste parameters\n"
    "Ctrl+Q: quit\n"
    "\n"
    "In the wave window:\n"
    "+, -, wheel: zoom\n"
    "1, F: one to one; fit to the window\n"
    "Arrow keys: move\n"
    "Space, held: before the correction\n"
    "A, H, B: automatic contrast, histogram, scale bar\n"
    "\n"
    "On a knob:\n"
    "Arrow keys: by 1 degree\n"
    "Page Up, Down: by 10 degrees\n"
    "\n"
    "In a value:\n"
    "Up, Down: by one step";

}  // namespace

void panel_program::show_table(bool shown)
{
    if (!table_) {
        table_ = std::make_unique<coefficient_table>(wave_window_->handle());
        table_->on_close([this] { show_table(false); });
        place_next_to(table_->handle(), frame_->handle());
    }
    ShowWindow(table_->handle(), shown ? SW_SHOWNOACTIVATE : SW_HIDE);
    CheckMenuItem(GetMenu(wave_window_->handle()), IDM_TABLE, shown ? MF_CHECKED : MF_UNCHECKED);
    refresh_table();
}

void panel_program::refresh_table()
{
    if (table_ && table_->visible()) table_->show(handler_->optics());
}

void panel_program::show_conventions()
{
    if (!conventions_) {
        conventions_ = std::make_unique<conventions_window>(wave_window_->handle(), engine_);
        conventions_->on_close([this] { ShowWindow(conventions_->handle(), SW_HIDE); });
        RECT wave;
        GetWindowRect(wave_window_->handle(), &wave);
        place_on_screen(conventions_->handle(),
                        {wave.left + screen_pixels(inset), wave.top + 2 * screen_pixels(inset)});
    }
    ShowWindow(conventions_->handle(), SW_SHOW);
}

void panel_program::show_keys() { show_box(keys_text, 0); }

void panel_program::show_version()
{
    const auto& facts = options_.program;
    std::string text = "Zentrix";
    if (facts.contains("version")) text += " " + facts["version"].get<std::string>();
    text += "\nCorrects the aberrations of an electron microscope in complex waves.";
    if (facts.contains("library")) text += "\n\nLibrary: " + facts["library"]["name"].get<std::string>();
    show_box(text, MB_USERICON);
}

}  // namespace zentrix::host
