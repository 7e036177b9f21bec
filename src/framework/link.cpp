#include "framework/link.h"

#include <cstddef>
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

bool is_interrupted() noexcept
{
    constexpr auto needed = offsetof(host_table, is_interrupted) + sizeof(host_table::is_interrupted);
    return the_link && the_link->table->size >= needed && the_link->table->is_interrupted(the_link) != 0;
}

}  // namespace Gatan::PlugIn
