#pragma once

#include "contract/host_link.h"

namespace Gatan::PlugIn {

/// The link that the host handed over; null before and after. Borrowed: the entry point DMPlugIn_Link_2 counts it.
host_link* current_link() noexcept;

/// Takes over a link (null: none). The same link again changes nothing; another one is counted and stored first and the
/// former one released then.
void set_current_link(host_link* link) noexcept;

/// Runs before a link is given up, while it can still be called: whoever keeps objects of the link lets go of them.
using link_listener = void (*)() noexcept;
void on_link_change(link_listener listener) noexcept;

}  // namespace Gatan::PlugIn
