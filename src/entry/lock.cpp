#include "image/lock.h"

#include <exception>
#include <utility>

#include "plugin/host/call.h"
#include "plugin/host/host_functions.h"
#include "plugin/host/log.h"

namespace qorv::dm {

image_lock::image_lock(const host::image_ref& source, access mode)
{
    require(static_cast<bool>(source), errors::parameters_invalid);
    auto made = boost::make_shared<state>();
    made->source = source;
    made->mode = mode;
    const std::uint32_t host_mode = mode == access::write ? HOST_LOCK_WRITE : HOST_LOCK_READ;
    host::script_object_ref lock = host::ImageGetLockedData(source, host_mode, {});
    made->unlock_method = host::find_UnlockMemory(lock);
    host::LockMemory(lock);
    made->lock = std::move(lock);  // from here on the destructor unlocks
    const host::image_slice slice = host::ImageData_GetSlice(made->lock, 0);
    made->data = slice.data;
    made->code = slice.data_type;
    made->dimensions = slice.num_dim;
    for (std::size_t i = 0; i < host::kMaxDim && i < slice.num_dim; ++i) {
        made->sizes[i] = slice.size[i];
        made->strides[i] = slice.stride[i];
    }
    state_ = std::move(made);
}

void image_lock::release() { state_->unlock(); }

void image_lock::state::unlock()
{
    if (!lock) return;
    const host::script_object_ref ended = std::exchange(lock, {});
    std::exception_ptr notification_failed;
    try {
        if (mode == access::write && data) host::ImageDataChanged(source);
    } catch (...) {
        notification_failed = std::current_exception();
    }
    host::call<void>(unlock_method, ended);
    if (notification_failed) std::rethrow_exception(notification_failed);
}

image_lock::state::~state()
{
    try {
        unlock();
    } catch (const std::exception& error) {  // a destructor cannot throw it; `release` is there for who wants to
        host::log_lost_error("An image's lock", error);
    }
}

}  // namespace qorv::dm
