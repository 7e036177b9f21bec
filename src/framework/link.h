#pragma once

#include <cstdint>

#include "contract/host_link.h"

namespace Gatan::PlugIn {

/// The link that the host handed over; null before and after. Borrowed: the entry point DMPlugIn_Link_2 counts it.
host_link* current_link() noexcept;

/// Changes with every change of the link, so that an object of an earlier link is recognised even if the new link is at
/// the same address.
std::uint64_t link_generation() noexcept;

/// Does what DMPlugIn_Link_2 promises: adds a reference to `link` (null: no link), stores it, then releases the
/// previous link. The current link again changes nothing.
///
/// Objects of the previous link are not released, neither here nor later: references to them read as null from now on
/// (binding/object_ref.h). A host that wants them back calls PlugInShutdown first.
void set_current_link(host_link* link) noexcept;

/// Whether the host asks to stop the running call. False without a host, and with a host whose table does not have the
/// operation.
bool is_interrupted() noexcept;

}  // namespace Gatan::PlugIn
