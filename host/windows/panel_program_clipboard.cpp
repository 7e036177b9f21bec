#include "host/windows/panel_program.h"

#include "host/parameters/json_file.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/parameter_text.h"
#include "host/windows/clipboard.h"
#include "host/windows/panel_parameters.h"
#include "host/windows/resource.h"

namespace zentrix::host {

void panel_program::copy_parameters(unsigned id)
{
    const parameter_set set = parameters_of(handler_->coefficients(), handler_->scope());
    const auto text = [&]() -> std::string {
        switch (id) {
            case IDM_COPY_PYTHON: return python_text(set);
            case IDM_COPY_SCRIPT: return script_text(set, handler_->width(), handler_->height());
            case IDM_COPY_JSON: return json_text(as_json(set));
            default: return option_text(set);
        }
    }();
    copy_text(wave_window_->handle(), text);
    say("Copied: " + text.substr(0, text.find('\n')));
}

void panel_program::paste_parameters()
{
    show_parameters(parameters_in_text(pasted_text(wave_window_->handle())), "paste");
}

void panel_program::show_parameters(const parameter_set& set, const std::string& step)
{
    const panel_parameters shown = for_panel(set, handler_->scope());
    edit_as(step, [&] { handler_->set(shown.lens, shown.scope); });
    if (!shown.note.empty()) alert(shown.note);
}

}  // namespace zentrix::host
