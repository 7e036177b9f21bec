#include "host/windows/panel_program.h"
#include "host/windows/resource.h"
#include "host/windows/screen_place.h"

namespace zentrix::host {

namespace {

constexpr int inset = 32;  // of the conventions from the wave window [pixels at 96 dots per inch]

constexpr char keys_text[] =
    "F1\tconventions: units, angles and signs\n"
    "F2\tshow or hide the panel\n"
    "F3\tsettings of the microscope\n"
    "F4\tphase in colours\n"
    "F6\tto the panel, and back to the wave\n"
    "F7\testimate the aberrations\n"
    "F8\ttable of all coefficients\n"
    "F9, Shift+F9\tdiffractogram of the wave, of the display\n"
    "Ctrl+S\tsave the corrected wave\n"
    "Ctrl+O, Ctrl+E\tload and save parameters\n"
    "Ctrl+Z, Ctrl+Y\tundo and redo\n"
    "Ctrl+Shift+C\tcopy the parameters as options of the command line\n"
    "Ctrl+Shift+V\tpaste parameters\n"
    "Ctrl+Q\tquit\n"
    "\n"
    "The wave:\n"
    "+, -, wheel\tzoom\n"
    "1, F\tone to one; fit to the window\n"
    "Arrow keys\tmove\n"
    "Space, held\tbefore the correction\n"
    "A, H, B\tautomatic contrast, histogram, scale bar\n"
    "A knob with the focus:\n"
    "Arrow keys\tby 1 degree\n"
    "Page Up, Down\tby 10 degrees\n"
    "A field with a value:\n"
    "Up, Down\tby one step";

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
