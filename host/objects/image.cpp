#include "host/objects/image.h"

#include "host/objects/value.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace zentrix::host {

namespace {

/// The contract has sizes and strides as 32-bit signed integers.
constexpr std::ptrdiff_t largest_stride = std::numeric_limits<std::int32_t>::max();

/// A larger request is certainly a mistake.
constexpr std::uint64_t most_bytes = std::uint64_t{1} << 40;

std::string size_text(const std::array<std::uint32_t, 3>& sizes, std::size_t dimensions)
{
    std::string text = std::to_string(sizes[0]);
    for (std::size_t d = 1; d < dimensions; ++d) text += " x " + std::to_string(sizes[d]);
    return text;
}

/// Asks the system for pages of 2 MB. They save most of the time that the first access to a large image takes, and make
/// columns faster to read.
void prefer_large_pages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) noexcept
{
#ifdef __linux__
    constexpr std::uintptr_t page = 1 << 21;
    const auto begin = reinterpret_cast<std::uintptr_t>(memory);
    const auto first = (begin + page - 1) / page * page, last = (begin + bytes) / page * page;
    // Where the system has no such pages, small ones do.
    if (first < last)
        static_cast<void>(madvise(static_cast<char*>(memory) + (first - begin), last - first, MADV_HUGEPAGE));
#endif
}

/// Calls `visit(offset)` with each element's offset from the origin, x fastest.
template <class Visitor>
void for_each_element(const image& from, Visitor visit)
{
    for (std::uint32_t z = 0; z < from.size(2); ++z)
        for (std::uint32_t y = 0; y < from.size(1); ++y)
            for (std::uint32_t x = 0; x < from.size(0); ++x)
                visit(x * from.stride(0) + y * from.stride(1) + z * from.stride(2));
}

template <class T>
void to_float(const image& from, float* to)
{
    const auto* source = static_cast<const T*>(from.data());
    for_each_element(from, [&](std::ptrdiff_t offset) { *to++ = static_cast<float>(source[offset]); });
}

using float_converter = void (*)(const image& from, float* to);

float_converter converter_of(std::uint32_t code)
{
    switch (code) {
        case HOST_ELEMENT_INT16: return to_float<std::int16_t>;
        case HOST_ELEMENT_FLOAT32: return to_float<float>;
        case HOST_ELEMENT_UINT8: return to_float<std::uint8_t>;
        case HOST_ELEMENT_INT32: return to_float<std::int32_t>;
        case HOST_ELEMENT_INT8: return to_float<std::int8_t>;
        case HOST_ELEMENT_UINT16: return to_float<std::uint16_t>;
        case HOST_ELEMENT_UINT32: return to_float<std::uint32_t>;
        case HOST_ELEMENT_FLOAT64: return to_float<double>;
        default: return nullptr;
    }
}

}  // namespace

image::image(std::string name, std::uint32_t code, std::span<const std::uint32_t> sizes)
    : object{object_kind::image}, name_{std::move(name)}, type_{&element_of(code)}, dimensions_{sizes.size()}
{
    if (dimensions_ > max_dimensions) throw script_error{"num_dim <= kMaxDim"};
    if (dimensions_ == 0) throw script_error{"An image needs at least one dimension."};
    std::ranges::copy(sizes, sizes_.begin());
    if (std::ranges::find(sizes_, 0u) != sizes_.end())
        throw script_error{"An image of " + size_text(sizes_, dimensions_) + " elements is empty."};
}

void image::set_contiguous() noexcept { strides_ = {1, sizes_[0], static_cast<std::ptrdiff_t>(sizes_[0]) * sizes_[1]}; }

bool image::is_contiguous() const noexcept
{
    std::ptrdiff_t next = 1;
    for (std::size_t d = 0; d < 3; ++d) {
        if (sizes_[d] > 1 && strides_[d] != next) return false;
        next *= sizes_[d];
    }
    return true;
}

void image::own_memory()
{
    const auto plane = std::uint64_t{sizes_[0]} * sizes_[1];
    const bool fits = plane <= static_cast<std::uint64_t>(largest_stride) && sizes_[2] <= largest_stride &&
                      plane * sizes_[2] <= most_bytes / type_->bytes;
    void* bytes = fits ? std::calloc(plane * sizes_[2], type_->bytes) : nullptr;
    if (!bytes)
        throw script_error{"There is not enough memory for an image of " + size_text(sizes_, dimensions_) +
                           " elements of " + std::to_string(type_->bytes) + " bytes."};
    prefer_large_pages(bytes, count() * type_->bytes);
    memory_ = std::shared_ptr<void>{bytes, std::free};
    data_ = bytes;
    set_contiguous();
}

image_ref image::create(std::string name, std::uint32_t code, std::span<const std::uint32_t> sizes)
{
    image_ref made{new image{std::move(name), code, sizes}};
    made->own_memory();
    return made;
}

image_ref image::over(std::string name, std::uint32_t code, void* data, std::span<const std::uint32_t> sizes,
                      std::span<const std::ptrdiff_t> strides, access allowed, std::shared_ptr<void> keep_alive)
{
    image_ref made{new image{std::move(name), code, sizes}};
    if (!data) throw script_error{"An image over the caller's memory needs a pointer to it."};
    if (strides.size() != sizes.size()) throw script_error{"An image needs a stride for each dimension."};
    made->set_contiguous();
    std::ranges::copy(strides, made->strides_.begin());
    for (std::size_t d = 0; d < sizes.size(); ++d)
        if (sizes[d] > static_cast<std::uint64_t>(largest_stride) || std::abs(strides[d]) > largest_stride)
            throw script_error{"Sizes and strides of an image have to fit 32 bits."};
    made->data_ = data;
    made->memory_ = std::move(keep_alive);
    made->allowed_ = allowed;
    return made;
}

image_ref image::clone() const
{
    auto copy = create(name_, code(), std::span{sizes_}.first(dimensions_));
    copy->scale_ = scale_;
    auto* to = static_cast<std::byte*>(copy->data_);
    const auto* from = static_cast<const std::byte*>(data_);
    if (is_contiguous()) {
        std::memcpy(to, from, count() * type_->bytes);
        return copy;
    }
    const auto bytes = static_cast<std::ptrdiff_t>(type_->bytes);
    for_each_element(*this, [&](std::ptrdiff_t offset) {
        std::memcpy(to, from + offset * bytes, type_->bytes);
        to += bytes;
    });
    return copy;
}

void image::convert_to_float()
{
    const auto converter = converter_of(code());
    if (!converter) throw script_error{describe() + " cannot be converted to float."};
    if (locks() > 0) throw script_error{describe() + " is locked and cannot be converted."};
    if (code() == HOST_ELEMENT_FLOAT32) return;
    const auto converted = create(name_, HOST_ELEMENT_FLOAT32, std::span{sizes_}.first(dimensions_));
    converter(*this, static_cast<float*>(converted->data_));
    type_ = converted->type_;
    strides_ = converted->strides_;
    data_ = converted->data_;
    memory_ = converted->memory_;
    allowed_ = access::write;
    data_changed();
}

void image::lock(access mode)
{
    if (!valid_) throw script_error{describe() + " was closed and cannot be locked."};
    if (mode == access::write && !is_writable()) throw script_error{describe() + " is read-only."};
    ++locks_[index(mode)];
    if (mode == access::write) ++write_locks_taken_;
}

void image::unlock(access mode) noexcept
{
    if (locks_[index(mode)] > 0) --locks_[index(mode)];
}

std::uint64_t image::fingerprint() const noexcept
{
    constexpr std::uint64_t offset_basis = 14695981039346656037u;  // the hash of Fowler, Noll and Vo (FNV-1a)
    constexpr std::uint64_t prime = 1099511628211u;
    const auto* from = static_cast<const unsigned char*>(data_);
    const auto bytes = static_cast<std::ptrdiff_t>(type_->bytes);
    std::uint64_t hash = offset_basis;
    for_each_element(*this, [&](std::ptrdiff_t offset) {
        for (std::ptrdiff_t b = 0; b < bytes; ++b) hash = (hash ^ from[offset * bytes + b]) * prime;
    });
    return hash;
}

void image::data_changed()
{
    ++changes_;
    if (listener_) listener_(*this);
}

std::string image::describe() const
{
    return "image \"" + name_ + "\" (" + size_text(sizes_, dimensions_) + ", " + type_->name + ")";
}

}  // namespace zentrix::host
