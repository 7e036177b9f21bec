#include "framework/link.h"

#include <utility>

namespace Gatan::PlugIn {
namespace {

host_link* the_link = nullptr;
std::uint64_t the_generation = 0;

}  // namespace

host_link* current_link() noexcept { return the_link; }

std::uint64_t link_generation() noexcept { return the_generation; }

void set_current_link(host_link* link) noexcept
{
    if (link == the_link) return;
    if (link) link->table->add_reference(link);
    host_link* const previous = std::exchange(the_link, link);
    ++the_generation;
    if (previous) previous->table->release(previous);
}

}  // namespace Gatan::PlugIn
