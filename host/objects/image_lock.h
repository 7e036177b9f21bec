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

/// Access to an image's pixels. Memory may be asked for only between its methods "void LockMemory( ScriptObject self )"
/// and "void UnlockMemory( ScriptObject self )", which nest. A lock that dies locked gives its image free and is
/// reported as a violation.
class image_lock : public script_object
{
  public:
    /// `part` limits the lock to a slice; null: all of the image. `mode` as in the contract: reading, writing or both.
    /// Throws  script_error for another mode and for a slice of another element type or outside the image
    image_lock(image_ref locked, std::uint32_t mode, const image_data_slice* part, std::shared_ptr<journal> told,
               bool check_unchanged);
    ~image_lock() override;

    void lock();
    void unlock();
    bool is_locked() const noexcept { return depth_ > 0; }

    /// The slices of contiguous storage; this host has one for each image.
    std::uint32_t slices() const noexcept { return 1; }
    /// The first element, the number of dimensions, and size and stride of each, x first.
    /// Throws  script_error while not locked
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
    std::shared_ptr<journal> journal_;  // a lock may outlive its engine
    std::array<std::int32_t, 3> start_{};
    std::array<std::int32_t, 3> extent_{};
    std::size_t depth_ = 0;
    std::uint64_t fingerprint_ = 0;
    std::uint64_t write_locks_before_ = 0;
    bool watches_ = false;  // for writes, while nobody may write
};

}  // namespace zentrix::host
