#include "host/program/wave_stack.h"

#include <algorithm>
#include <complex>
#include <span>

#include "host/files/image_file.h"
#include "host/parameters/record.h"
#include "host/program/wave_file.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

using pixel = std::complex<float>;

/// Plane z of a contiguous stack.
std::span<pixel> pixels_of(host::image& stack, std::uint32_t z)
{
    const std::size_t count = std::size_t{stack.size(0)} * stack.size(1);
    return {static_cast<pixel*>(stack.data()) + z * count, count};
}

}  // namespace

host::image_ref new_outline(const std::string& name, std::uint32_t width, std::uint32_t height, std::uint32_t depth,
                            const host::calibration& scale)
{
    const auto memory = std::make_shared<pixel>();
    const std::uint32_t sizes[] = {width, height, depth};
    const std::ptrdiff_t strides[] = {0, 0, 0};
    auto outline =
        host::image::over(name, HOST_ELEMENT_COMPLEX64, memory.get(), sizes, strides, host::access::read, memory);
    outline->set_scale(scale);
    return outline;
}

wave_reader::wave_reader(const std::string& name)
{
    const auto file = host::system_path(name);
    stream_ = host::npy_stack_reader::open(file, HOST_ELEMENT_COMPLEX64);
    if (!stream_) {
        outline_ = whole_ = read_waves(name);
        return;
    }
    outline_ = new_outline(host::utf8_path(file.stem()), stream_->width(), stream_->height(), stream_->depth(), {});
    if (const auto recorded = host::recorded_scale(file, *outline_)) outline_->set_scale(*recorded);
}

host::image_ref wave_reader::next()
{
    if (!stream_ && !is_stack()) return with_dimensions(whole_, 2);
    host::image_ref plane;
    if (stream_) {
        plane = stream_->next();
    } else {
        const std::uint32_t sizes[] = {whole_->size(0), whole_->size(1)};
        plane = host::image::create(whole_->name(), HOST_ELEMENT_COMPLEX64, sizes);
        std::ranges::copy(pixels_of(*whole_, plane_++), static_cast<pixel*>(plane->data()));
    }
    plane->set_scale(outline_->scale());
    return plane;
}

stack_writer::stack_writer(const std::string& file, const host::image& outline) : file_{file}
{
    const std::uint32_t sizes[] = {outline.size(0), outline.size(1), outline.size(2)};
    if (file.ends_with(".npy")) {
        stream_ = std::make_unique<host::npy_stack_writer>(host::system_path(file), HOST_ELEMENT_COMPLEX64, sizes[0],
                                                           sizes[1], sizes[2]);
        return;
    }
    whole_ = host::image::create(outline.name(), HOST_ELEMENT_COMPLEX64, sizes);
    whole_->set_scale(outline.scale());
}

void stack_writer::append(const host::image& plane)
{
    if (stream_) return stream_->append(plane);
    const std::span from{static_cast<const pixel*>(plane.data()), plane.count()};
    std::ranges::copy(from, pixels_of(*whole_, plane_++).begin());
}

void stack_writer::commit()
{
    if (stream_)
        stream_->commit();
    else
        host::write_image(host::system_path(file_), *whole_);
}

}  // namespace zentrix::program
