#include "framework/link.h"

namespace Gatan::PlugIn {
namespace {

host_link* the_link = nullptr;
link_listener the_listener = nullptr;

}  // namespace

host_link* current_link() noexcept { return the_link; }

void set_current_link(host_link* link) noexcept
{
    if (link == the_link) return;
    if (the_link && the_listener) the_listener();
    if (link) link->table->add_reference(link);
    host_link* const former = the_link;
    the_link = link;
    if (former) former->table->release(former);
}

void on_link_change(link_listener listener) noexcept { the_listener = listener; }

}  // namespace Gatan::PlugIn
