#include "host/objects/image_lock.h"

namespace zentrix::host {

namespace {

image_lock& self_in(std::span<const script_value> arguments)
{
    const auto self = object_in<image_lock>(arguments[0]);
    if (!self) throw script_error{"The object is not an image lock."};
    return *self;
}

}  // namespace

image_lock::image_lock(image_ref locked, std::uint32_t mode, const image_data_slice* part,
                       std::shared_ptr<journal> records, bool check_unchanged)
    : script_object{"lock"},
      locked_{std::move(locked)},
      writes_{(mode & HOST_LOCK_WRITE) != 0},
      check_unchanged_{check_unchanged},
      records_{std::move(records)}
{
    if (mode == 0 || (mode & ~(HOST_LOCK_READ | HOST_LOCK_WRITE)) != 0)
        throw script_error{"The access mode " + std::to_string(mode) + " is unknown."};
    for (std::size_t d = 0; d < 3; ++d) extent_[d] = static_cast<std::int32_t>(locked_->size(d));
    if (part) limit_to(part->slice());
    add_method("void LockMemory( ScriptObject self )", [](std::span<const script_value> arguments) {
        self_in(arguments).lock();
        return script_value{};
    });
    add_method("void UnlockMemory( ScriptObject self )", [](std::span<const script_value> arguments) {
        self_in(arguments).unlock();
        return script_value{};
    });
}

image_lock::~image_lock()
{
    if (depth_ == 0) return;
    records_->add_violation(describe() + " was released while its memory was locked.");
    unlock_all();
}

void image_lock::limit_to(const host_data_slice& part)
{
    if (part.data_type != locked_->code() || part.num_dim != locked_->dimensions())
        throw script_error{"The slice is of another data type or number of dimensions than " + locked_->describe() +
                           "."};
    for (std::size_t d = 0; d < part.num_dim; ++d) {
        const std::int64_t end = std::int64_t{part.start[d]} + part.extent[d];
        if (part.start[d] < 0 || part.extent[d] < 1 || end > locked_->size(d))
            throw script_error{"The slice reaches outside " + locked_->describe() + "."};
        start_[d] = part.start[d];
        extent_[d] = part.extent[d];
    }
}

void image_lock::lock()
{
    locked_->lock(writes_ ? access::write : access::read);
    if (depth_++ > 0 || !check_unchanged_) return;
    checks_pixels_ = locked_->locks(access::write) == 0;
    if (!checks_pixels_) return;
    fingerprint_ = locked_->fingerprint();
    write_locks_before_ = locked_->write_locks_taken();
}

void image_lock::unlock()
{
    if (depth_ == 0) {
        records_->add_violation(describe() + " is unlocked but was not locked.");
        throw script_error{"The memory of " + locked_->describe() + " is not locked."};
    }
    locked_->unlock(writes_ ? access::write : access::read);
    if (--depth_ > 0 || !checks_pixels_ || write_locks_before_ != locked_->write_locks_taken()) return;
    if (locked_->fingerprint() != fingerprint_)
        records_->add_violation(describe() + " is for reading, but the pixels changed.");
}

void image_lock::unlock_all()
{
    for (; depth_ > 0; --depth_) locked_->unlock(writes_ ? access::write : access::read);
}

void* image_lock::data() const
{
    if (depth_ == 0) {
        records_->add_violation(describe() + " is asked for its data while it is not locked.");
        throw script_error{"The memory of " + locked_->describe() + " is not locked."};
    }
    std::ptrdiff_t offset = 0;
    for (std::size_t d = 0; d < 3; ++d) offset += start_[d] * locked_->stride(d);
    return static_cast<std::byte*>(locked_->data()) + offset * static_cast<std::ptrdiff_t>(locked_->type().bytes);
}

std::int32_t image_lock::stride(std::size_t dimension) const noexcept
{
    return static_cast<std::int32_t>(locked_->stride(dimension));
}

std::string image_lock::describe() const
{
    return std::string{writes_ ? "write" : "read"} + " lock of " + locked_->describe();
}

}  // namespace zentrix::host
