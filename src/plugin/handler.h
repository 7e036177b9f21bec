#pragma once

#include "plugin/host/object_ref.h"

/// The handler object and the tag group that a script handed over; process-wide, absent until then.
namespace qorv::dm {

/// Null until a script set one. Borrowed: copy the reference before anything that could replace it.
const host::script_object_ref* held_handler() noexcept;
const host::tag_group_ref* held_tag_group() noexcept;

/// Script function ZXSetZentrixHandler: makes new holders for both. The holders of an earlier call are not released:
/// panels and scripts may still be working with them.
void SetZentrixHandlerDM(host::script_object_ref hander, host::tag_group_ref tag);

/// Deletes the present holders, handler first.
void release_held() noexcept;

}  // namespace qorv::dm
