#pragma once

#include "binding/object_ref.h"

/// The handler object and the tag group that a script has set. Process-wide; absent until then.
namespace qorv::dm {

/// Null until a script sets one. Borrowed: copy the reference before calling anything that could replace it.
const binding::script_object_ref* held_handler() noexcept;
const binding::tag_group_ref* held_tag_group() noexcept;

/// Script function ZXSetZentrixHandler: creates new holders for both. The holders of an earlier call stay until the
/// process ends, because a panel or script may still be using them.
void SetZentrixHandlerDM(binding::script_object_ref hander, binding::tag_group_ref tag);

/// Deletes the present holders, handler first.
void release_held() noexcept;

}  // namespace qorv::dm
