#include "host/windows/panel_program.h"

#include "host/text/encoding.h"
#include "host/windows/resource.h"

namespace zentrix::host {

namespace {

/// What differs: "A1", "A1 angle", "settings", "Apply"; "coefficients" if several do.
std::string name_of_edit(const panel_state& before, const panel_state& after)
{
    if (before.applied != after.applied) return "Apply";
    std::string name;
    for (const auto& about : lens::all_coefficients) {
        const lens::polar &former = before.lens[about.which], &now = after.lens[about.which];
        if (former == now) continue;
        if (!name.empty()) return "coefficients";
        name = std::string{about.name} + (former.modulus == now.modulus ? " angle" : "");
    }
    return name.empty() ? "settings" : name;
}

}  // namespace

void panel_program::note_edit()
{
    if (!history_ || restoring_) return;
    auto now = handler_->state();
    if (now == history_->present()) return;
    if (estimate_) estimate_->stop();  // also after an edit with which there is no picture
    const auto& before = history_->present();
    const bool alone = !edit_name_.empty() || now.applied != before.applied || !(now.scope == before.scope);
    const std::string name = edit_name_.empty() ? name_of_edit(before, now) : edit_name_;
    if (alone) history_->end_step();
    history_->record(std::move(now), name);
    if (alone) history_->end_step();
    show_history();
}

void panel_program::edit_as(const std::string& name, const std::function<void()>& edit)
{
    edit_name_ = name;
    try {
        edit();
        note_edit();
    } catch (...) {
        edit_name_.clear();
        throw;
    }
    edit_name_.clear();
}

void panel_program::travel(bool back)
{
    const panel_state* const found = back ? history_->undo() : history_->redo();
    if (!found) return;
    if (estimate_) estimate_->stop();
    const panel_state wanted = *found;
    restoring_ = true;
    try {
        handler_->restore(wanted);
    } catch (...) {
        restoring_ = false;
        if (!(handler_->state() == wanted)) static_cast<void>(back ? history_->redo() : history_->undo());
        show_history();
        throw;
    }
    restoring_ = false;
    show_history();
}

void panel_program::show_history()
{
    const HMENU menu = GetMenu(wave_window_->handle());
    const auto show = [&](UINT item, const std::string& verb, bool possible, const std::string& step, const char* key) {
        const std::string text = "&" + verb + (step.empty() ? "" : " " + step) + "\t" + key;
        ModifyMenuW(menu, item, MF_BYCOMMAND | MF_STRING, item, widen(text).c_str());
        EnableMenuItem(menu, item, possible ? MF_ENABLED : MF_GRAYED);
    };
    show(IDM_UNDO, "Undo", history_->can_undo(), history_->undo_name(), "Ctrl+Z");
    show(IDM_REDO, "Redo", history_->can_redo(), history_->redo_name(), "Ctrl+Y");
}

void panel_program::follow_gesture(const MSG& message)
{
    const bool pressed = message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONDBLCLK;
    if (!pressed && message.message != WM_KEYDOWN && message.message != WM_MOUSEWHEEL) return;
    const std::pair gesture{message.message, message.hwnd};
    if (pressed || gesture != gesture_) history_->end_step();
    gesture_ = gesture;
}

}  // namespace zentrix::host
