#include "plugin/handler.h"

#include <memory>
#include <utility>
#include <vector>

#include "entry/timing_scope.h"

namespace qorv::dm {
namespace {

binding::script_object_ref* the_handler = nullptr;
binding::tag_group_ref* the_tag_group = nullptr;

/// A pair of holders that a later call replaced.
struct replaced_holders
{
    binding::script_object_ref* handler;
    binding::tag_group_ref* tag_group;
};

/// Intentionally never freed; the host counts them as held until exit. Kept reachable so that leak checkers do not
/// report them.
std::vector<replaced_holders>& all_replaced()
{
    static auto& all = *new std::vector<replaced_holders>;
    return all;
}

}  // namespace

const binding::script_object_ref* held_handler() noexcept { return the_handler; }

const binding::tag_group_ref* held_tag_group() noexcept { return the_tag_group; }

void SetZentrixHandlerDM(binding::script_object_ref hander, binding::tag_group_ref tag)
{
    const timing_scope timing{"SetZentrixHandlerDM"};
    // Create both holders before changing either global. The previous ones are kept, see the declaration.
    auto handler = std::make_unique<binding::script_object_ref>(std::move(hander));
    auto tag_group = std::make_unique<binding::tag_group_ref>(std::move(tag));
    if (the_handler) all_replaced().push_back({the_handler, the_tag_group});
    the_handler = handler.release();
    the_tag_group = tag_group.release();
}

void release_held() noexcept
{
    delete std::exchange(the_handler, nullptr);
    delete std::exchange(the_tag_group, nullptr);
}

}  // namespace qorv::dm
