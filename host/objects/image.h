#pragma once

#include "host/objects/calibration.h"
#include "host/objects/element.h"
#include "host/objects/object.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <span>

namespace zentrix::host {

inline constexpr std::size_t max_dimensions = 3;

enum class access : std::uint32_t
{
    read = HOST_LOCK_READ,
    write = HOST_LOCK_WRITE
};

/// A typed image of one to three dimensions, x first, in memory of its own or of another owner.
///
///     auto wave = image::create("wave", HOST_ELEMENT_COMPLEX64, {{512, 512}});
///     auto view = image::over("array", HOST_ELEMENT_FLOAT32, data, {{w, h}}, {{1, w}}, access::read, owner);
class image : public object
{
  public:
    /// A new contiguous image, all zero.
    /// name    for messages and ImageGetName
    /// code    element type, see element.h
    /// sizes   elements along each dimension, 1 or more
    /// Throws  script_error "num_dim <= kMaxDim" for more than three dimensions; a text that names the size when it is
    ///         empty or the memory is not enough
    static std::shared_ptr<image> create(std::string name, std::uint32_t code, std::span<const std::uint32_t> sizes);

    /// An image over the caller's memory, without a copy.
    /// data        the element at the origin
    /// strides     elements from one to the next along each dimension; may be negative or zero
    /// allowed     access::read: write locks are refused
    /// keep_alive  owner of the memory; released when the image is destroyed
    /// Throws      as create; also for a null pointer and for strides that do not fit 32 bits
    static std::shared_ptr<image> over(std::string name, std::uint32_t code, void* data,
                                       std::span<const std::uint32_t> sizes, std::span<const std::ptrdiff_t> strides,
                                       access allowed, std::shared_ptr<void> keep_alive);

    const std::string& name() const noexcept { return name_; }
    std::uint32_t code() const noexcept { return type_->code; }
    const element& type() const noexcept { return *type_; }
    std::size_t dimensions() const noexcept { return dimensions_; }
    /// Elements along a dimension; 1 for a dimension that the image does not have.
    std::uint32_t size(std::size_t dimension) const noexcept { return dimension < 3 ? sizes_[dimension] : 1; }
    /// Distance in elements from one to the next along a dimension.
    std::ptrdiff_t stride(std::size_t dimension) const noexcept { return dimension < 3 ? strides_[dimension] : 0; }
    std::size_t count() const noexcept { return std::size_t{sizes_[0]} * sizes_[1] * sizes_[2]; }
    bool is_contiguous() const noexcept;
    bool is_writable() const noexcept { return allowed_ == access::write; }

    /// The element at the origin. Only the host itself may use it: the library needs a lock.
    void* data() noexcept { return data_; }
    const void* data() const noexcept { return data_; }
    /// The element at (x, y, z). The size of T must be the element's.
    template <class T>
    T& at(std::ptrdiff_t x, std::ptrdiff_t y = 0, std::ptrdiff_t z = 0) noexcept
    {
        return static_cast<T*>(data_)[x * strides_[0] + y * strides_[1] + z * strides_[2]];
    }

    /// A contiguous copy in memory of its own, of the same name.
    std::shared_ptr<image> clone() const;
    /// Converts integers and 8-byte reals to 4-byte reals, in memory of the image's own. 4-byte reals are unchanged.
    /// Throws  script_error while locked, and for all other elements
    void convert_to_float();

    /// The image's scale, from the file that it was read from or set by hand; copied by `clone`. Scripts do not see it.
    const calibration& scale() const noexcept { return scale_; }
    void set_scale(calibration scale) { scale_ = std::move(scale); }

    /// False after the user closed the image. References stay valid; locks are refused.
    bool is_valid() const noexcept { return valid_; }
    void close() noexcept { valid_ = false; }

    /// Counts a lock. Throws  script_error when the image was closed or may not be written
    void lock(access mode);
    void unlock(access mode) noexcept;
    std::size_t locks(access mode) const noexcept { return locks_[index(mode)]; }
    std::size_t locks() const noexcept { return locks_[0] + locks_[1]; }
    /// Number of write locks so far, released ones included.
    std::uint64_t write_locks_taken() const noexcept { return write_locks_taken_; }
    /// A hash of all elements. Detects writes where none are allowed.
    std::uint64_t fingerprint() const noexcept;

    /// To be called after pixels were written: counts the change and calls the listener.
    void data_changed();
    std::uint64_t changes() const noexcept { return changes_; }
    /// Sets the listener, called on the main thread at each data_changed. A window that shows the image redraws then.
    void on_changed(std::function<void(image&)> listener) { listener_ = std::move(listener); }

    std::string describe() const override;

  private:
    image(std::string name, std::uint32_t code, std::span<const std::uint32_t> sizes);
    static std::size_t index(access mode) noexcept { return mode == access::write ? 1 : 0; }
    void own_memory();
    void set_contiguous() noexcept;

    std::string name_;
    const element* type_;
    std::size_t dimensions_;
    std::array<std::uint32_t, 3> sizes_{1, 1, 1};
    std::array<std::ptrdiff_t, 3> strides_{1, 1, 1};
    void* data_ = nullptr;
    std::shared_ptr<void> memory_;  // owns the bytes at data_
    access allowed_ = access::write;
    bool valid_ = true;
    std::array<std::atomic<std::size_t>, 2> locks_{};  // read locks are taken on any thread
    std::uint64_t write_locks_taken_ = 0;
    std::atomic<std::uint64_t> changes_ = 0;  // read on any thread
    std::function<void(image&)> listener_;
    calibration scale_;
};

using image_ref = std::shared_ptr<image>;

}  // namespace zentrix::host
