#pragma once

#include <array>
#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace qorv::dm {

/// Typed view of an image's pixels, up to three dimensions. Copies share the pixels. A view made from a lock keeps the
/// lock alive, in the boost::shared_ptr that the exported header warp.h fixes. Sizes are in elements along x, y, z (1
/// where an image has fewer dimensions), strides in elements.
template <class T>
class image
{
  public:
    using size_type = std::ptrdiff_t;
    using extents = std::array<size_type, 3>;

    image() = default;

    /// Contiguous pixels, x fastest, owned by the caller.
    image(T* data, size_type width, size_type height = 1, size_type depth = 1)
        : data_{data}, sizes_{width, height, depth}, strides_{1, width, width * height}
    {}

    /// Pixels at data + x * strides[0] + y * strides[1] + z * strides[2]; `lock` is kept until the view and
    /// all its copies are destroyed.
    image(T* data, extents sizes, extents strides, boost::shared_ptr<const void> lock = {})
        : data_{data}, sizes_{sizes}, strides_{strides}, lock_{std::move(lock)}
    {}

    /// A view for reading of the same pixels.
    operator image<const T>() const requires(!std::is_const_v<T>) { return {data_, sizes_, strides_, lock_}; }

    T* data() const noexcept { return data_; }
    size_type width() const noexcept { return sizes_[0]; }
    size_type height() const noexcept { return sizes_[1]; }
    size_type depth() const noexcept { return sizes_[2]; }
    size_type size() const noexcept { return sizes_[0] * sizes_[1] * sizes_[2]; }
    const extents& sizes() const noexcept { return sizes_; }
    const extents& strides() const noexcept { return strides_; }

    T& operator()(size_type x, size_type y = 0, size_type z = 0) const noexcept
    {
        return data_[x * strides_[0] + y * strides_[1] + z * strides_[2]];
    }
    T* row(size_type y, size_type z = 0) const noexcept { return data_ + y * strides_[1] + z * strides_[2]; }

    /// A view of one plane, which shares the lock.
    image plane(size_type z) const { return {row(0, z), {sizes_[0], sizes_[1], 1}, strides_, lock_}; }

    /// True when the elements form one flat sequence, x fastest.
    bool contiguous() const noexcept
    {
        return (sizes_[0] <= 1 || strides_[0] == 1) && (sizes_[1] <= 1 || strides_[1] == sizes_[0]) &&
               (sizes_[2] <= 1 || strides_[2] == sizes_[0] * sizes_[1]);
    }

  private:
    T* data_ = nullptr;
    extents sizes_{0, 0, 0};
    extents strides_{1, 0, 0};
    boost::shared_ptr<const void> lock_;
};

}  // namespace qorv::dm
