#include "entry/lock.h"

#include <exception>
#include <utility>

#include "binding/call.h"
#include "binding/host_functions.h"
#include "binding/output_window.h"

namespace qorv::dm {

image_lock::image_lock(const binding::image_ref& source, access mode)
{
    require(static_cast<bool>(source), errors::parameters_invalid);
    if (mode == access::write) binding::ImageDataChanged.require();  // before any pixel is written
    auto made = boost::make_shared<state>();
    made->source = source;
    made->mode = mode;
    const std::uint32_t host_mode = mode == access::write ? HOST_LOCK_WRITE : HOST_LOCK_READ;
    binding::script_object_ref lock = binding::ImageGetLockedData(source, host_mode, {});
    made->unlock_method = binding::find_UnlockMemory(lock);
    binding::LockMemory(lock);
    made->lock = std::move(lock);  // from here on the destructor unlocks
    const binding::image_slice slice = binding::ImageData_GetSlice(made->lock, 0);
    require(slice.data != nullptr, errors::parameters_invalid);
    made->data = slice.data;
    made->code = slice.data_type;
    made->dimensions = slice.num_dim;
    for (std::size_t i = 0; i < binding::kMaxDim && i < slice.num_dim; ++i) {
        made->sizes[i] = slice.size[i];
        made->strides[i] = slice.stride[i];
    }
    state_ = std::move(made);
}

void image_lock::release() { state_->unlock(); }

void image_lock::state::unlock()
{
    if (!lock) return;
    const binding::script_object_ref ended = std::exchange(lock, {});
    std::exception_ptr notification_failed;
    try {
        if (mode == access::write && data) binding::ImageDataChanged(source);
    } catch (...) {
        notification_failed = std::current_exception();
    }
    binding::call<void>(unlock_method, ended);
    if (notification_failed) std::rethrow_exception(notification_failed);
}

image_lock::state::~state()
{
    try {
        unlock();
    } catch (const std::exception& error) {  // cannot throw from a destructor; call release() to see the error
        binding::log_lost_error("An image's lock", error);
    }
}

}  // namespace qorv::dm
