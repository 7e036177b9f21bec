#include "plugin/handler.h"

#include <memory>
#include <utility>

#include "image/timing_scope.h"

namespace qorv::dm {
namespace {

host::script_object_ref* the_handler = nullptr;
host::tag_group_ref* the_tag_group = nullptr;

}  // namespace

const host::script_object_ref* held_handler() noexcept { return the_handler; }

const host::tag_group_ref* held_tag_group() noexcept { return the_tag_group; }

void SetZentrixHandlerDM(host::script_object_ref hander, host::tag_group_ref tag)
{
    const timing_scope timing{"SetZentrixHandlerDM"};
    // Both holders exist before either global changes. The former ones are left on purpose, see the declaration.
    auto handler = std::make_unique<host::script_object_ref>(std::move(hander));
    auto tag_group = std::make_unique<host::tag_group_ref>(std::move(tag));
    the_handler = handler.release();
    the_tag_group = tag_group.release();
}

void release_held() noexcept
{
    delete std::exchange(the_handler, nullptr);
    delete std::exchange(the_tag_group, nullptr);
}

}  // namespace qorv::dm
