#include "host/windows/panel_program.h"

#include "host/windows/microscope_dialog.h"
#include "host/windows/resource.h"

namespace zentrix::host {

void panel_program::command(unsigned id)
{
    switch (id) {
        case IDM_SAVE: return save();
        case IDM_SAVE_PARAMETERS: return save_parameters();
        case IDM_LOAD_PARAMETERS: return load_parameters();
        case IDM_QUIT: return PostQuitMessage(0);
        case IDM_PANEL: return show_panel(!frame_->visible());
        case IDM_MICROSCOPE: return handler_->edit_microscope();
        case IDM_ESTIMATE: return show_estimate_dialog();
        case IDM_UNDO_ESTIMATE: return undo_estimate();
        case IDM_DIFFRACTOGRAM: return show_diffractogram(!diffractogram_window_ || !diffractogram_window_->visible());
        case IDM_DIFFRACTOGRAM_OF_DISPLAY:
            diffractogram_of_display_ = !diffractogram_of_display_;
            return choose_diffractogram();
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
