#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>

#include "binding/object_ref.h"
#include "image/element_type.h"
#include "image/errors.h"
#include "image/image.h"

namespace qorv::dm {

/// A lock on the pixel memory of a host image, for reading or writing. Copies share the lock; the last copy releases
/// it. The release of a lock for writing first notifies the host that the pixels changed.
class image_lock
{
  public:
    enum class access
    {
        read,
        write
    };

    /// Throws  host_error when the host refuses, errors::parameters_invalid for a null image or null data
    image_lock(const binding::image_ref& image, access mode);

    /// Releases the lock now, also for its copies; pointers and views become invalid.
    /// Throws  host_error when the host fails; a destructor can only log such an error
    void release();

    std::ptrdiff_t width() const noexcept { return state_->sizes[0]; }
    std::ptrdiff_t height() const noexcept { return state_->sizes[1]; }
    std::ptrdiff_t depth() const noexcept { return state_->sizes[2]; }
    const image<char>::extents& sizes() const noexcept { return state_->sizes; }
    /// In elements; 0 beyond the image's dimensions.
    const image<char>::extents& strides() const noexcept { return state_->strides; }
    std::uint32_t dimensions() const noexcept { return state_->dimensions; }
    std::uint32_t host_code() const noexcept { return state_->code; }
    element_type type() const noexcept { return element_type_of(state_->code); }
    void* data() const noexcept { return state_->data; }

  protected:
    template <class T>
    image<T> typed_view() const
    {
        require(host_code() == static_cast<std::uint32_t>(data_type_of<std::remove_const_t<T>>),
                errors::invalid_data_type);
        return {static_cast<T*>(data()), sizes(), strides(), state_};
    }

  private:
    struct state
    {
        ~state();
        void unlock();

        binding::image_ref source;
        access mode;
        binding::script_object_ref lock;  ///< set while the memory is locked
        binding::function_ref unlock_method;
        void* data = nullptr;
        std::uint32_t code = 0;
        std::uint32_t dimensions = 0;
        image<char>::extents sizes{1, 1, 1};
        image<char>::extents strides{1, 0, 0};
    };
    boost::shared_ptr<state> state_;
};

/// A lock for reading.
class read_lock : public image_lock
{
  public:
    explicit read_lock(const binding::image_ref& source) : image_lock{source, access::read} {}
    /// Throws  errors::invalid_data_type unless the image has elements of type T
    template <class T>
    image<const T> view() const
    {
        return typed_view<const T>();
    }
};

/// A lock for writing. Its release notifies the host that the pixels changed.
class write_lock : public image_lock
{
  public:
    explicit write_lock(const binding::image_ref& destination) : image_lock{destination, access::write} {}
    /// Throws  errors::invalid_data_type unless the image has elements of type T
    template <class T>
    image<T> view() const
    {
        return typed_view<T>();
    }
};

}  // namespace qorv::dm
