#include "panel/floating_panel.h"

#include <memory>
#include <stdexcept>
#include <utility>

#include "panel/current.h"
#include "panel/zentrix_panel.h"

namespace qorv::panel {

namespace {

std::unique_ptr<CZentrixPanel> open_panel;

}  // namespace

HWND create_floating_panel(HWND parent, panel_link& link)
{
    if (open_panel) throw std::runtime_error{"The panel exists already."};
    current::link = &link;
    auto panel = std::make_unique<CZentrixPanel>();
    if (!panel->Create(CWnd::FromHandle(parent ? parent : ::GetDesktopWindow()))) {
        throw std::runtime_error{"The panel's window cannot be created."};
    }
    open_panel = std::move(panel);
    return open_panel->m_hWnd;
}

void destroy_floating_panel(HWND panel) noexcept
{
    if (!open_panel || (open_panel->m_hWnd && open_panel->m_hWnd != panel)) return;
    open_panel.reset();
    current::link = nullptr;
}

bool palette_open() noexcept { return current::panel != nullptr; }

long window_visible() noexcept { return current::panel ? current::panel->IsWindowVisible() : 0; }

void update_panel()
{
    if (!current::panel || !current::sheet || !current::link->has_tags()) return;
    current::panel->RefreshFromTags();
    current::sheet->RefreshFromTags();
}

}  // namespace qorv::panel
