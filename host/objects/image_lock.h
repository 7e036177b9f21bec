#pragma once

#include "host/objects/image.h"
#include "host/objects/journal.h"
#include "host/objects/script_object.h"

#include <array>

namespace zentrix::host {

/// Part of an image's data: an element type, and a start and an extent along each dimension.
class image_data_slice : public script_object
{
  public:
    explicit image_data_slice(const host_data_slice& slice) : script_object{"image data slice"}, slice_{slice} {}
    const host_data_slice& slice() const noexcept { return slice_; }

  private:
    host_data_slice slice_;
};

/// Access to an image's pixels, which are available between the calls of the methods
/// "void LockMemory( ScriptObject self )" and "void UnlockMemory( ScriptObject self )". The calls nest. A lock that is
/// destroyed while locked unlocks its image and is recorded as a violation.
class image_lock : public script_object
{
  public:
    /// mode             HOST_LOCK_READ, HOST_LOCK_WRITE or both
    /// part             the slice to lock; null: the whole image
    /// records          receives violations; the lock may outlive its engine
    /// check_unchanged  a read lock records a violation when the pixels change
    /// Throws           script_error for another mode, and for a slice of another element type or outside the image
    image_lock(image_ref locked, std::uint32_t mode, const image_data_slice* part, std::shared_ptr<journal> records,
               bool check_unchanged);
    ~image_lock() override;

    void lock();
    void unlock();
    bool is_locked() const noexcept { return depth_ > 0; }

    /// Number of slices in which the image is stored. This host stores every image in one.
    std::uint32_t slices() const noexcept { return 1; }
    /// The first element. Throws  script_error, and records a violation, while not locked
    void* data() const;
    std::size_t dimensions() const noexcept { return locked_->dimensions(); }
    std::int32_t size(std::size_t dimension) const noexcept { return extent_[dimension]; }
    std::int32_t stride(std::size_t dimension) const noexcept;
    const image& locked() const noexcept { return *locked_; }

    std::string describe() const override;

  private:
    void limit_to(const host_data_slice& part);
    void unlock_all();

    image_ref locked_;
    bool writes_;
    bool check_unchanged_;
    std::shared_ptr<journal> records_;
    std::array<std::int32_t, 3> start_{};
    std::array<std::int32_t, 3> extent_{};
    std::size_t depth_ = 0;
    std::uint64_t fingerprint_ = 0;
    std::uint64_t write_locks_before_ = 0;
    bool checks_pixels_ = false;  // set while locked when nothing may write
};

}  // namespace zentrix::host
