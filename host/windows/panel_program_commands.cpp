#include "host/windows/panel_program.h"

#include "host/windows/microscope_dialog.h"
#include "host/windows/resource.h"

namespace zentrix::host {

void panel_program::command(unsigned id)
{
    try {
        run_command(id);
    } catch (...) {
        chosen_failed_ = true;
        window::report_exception();
        chosen_failed_ = false;
    }
}

void panel_program::run_command(unsigned id)
{
    switch (id) {
        case IDM_SAVE: return save();
        case IDM_SAVE_PARAMETERS: return save_parameters();
        case IDM_LOAD_PARAMETERS: return load_parameters();
        case IDM_QUIT: return PostQuitMessage(0);
        case IDM_PANEL: return show_panel(!frame_->visible());
        case IDM_NEXT_WINDOW: return switch_window(1);
        case IDM_PREVIOUS_WINDOW: return switch_window(-1);
        case IDM_MICROSCOPE: return handler_->edit_microscope();
        case IDM_ESTIMATE: return show_estimate_dialog();
        case IDM_DIFFRACTOGRAM: return toggle_diffractogram(false);
        case IDM_DIFFRACTOGRAM_OF_DISPLAY: return toggle_diffractogram(true);
        case IDM_UNDO: return travel(true);
        case IDM_REDO: return travel(false);
        case IDM_COPY_OPTIONS:
        case IDM_COPY_PYTHON:
        case IDM_COPY_SCRIPT:
        case IDM_COPY_JSON: return copy_parameters(id);
        case IDM_PASTE: return paste_parameters();
        case IDM_TABLE: return show_table(!table_ || !table_->visible());
        case IDM_CONVENTIONS: return show_conventions();
        case IDM_KEYS: return show_keys();
        case IDM_VERSION: return show_version();
        case IDM_PHASE_COLOURS: return colour_phases(wave_window_->phase_palette() == palette::grey);
    }
}

void panel_program::show_panel(bool shown)
{
    if (shown)
        frame_->show();
    else
        frame_->hide();
}

void panel_program::colour_phases(bool coloured)
{
    wave_window_->set_phase_palette(coloured ? palette::cyclic : palette::grey);
    CheckMenuItem(GetMenu(wave_window_->handle()), IDM_PHASE_COLOURS, coloured ? MF_CHECKED : MF_UNCHECKED);
}

std::optional<microscope> panel_program::ask_microscope(const microscope& present)
{
    return host::ask_microscope(wave_window_->handle(), present);
}

}  // namespace zentrix::host
