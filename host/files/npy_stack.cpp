#include "host/files/npy_stack.h"

#include <array>

#include "host/files/header_error.h"
#include "host/files/npy.h"
#include "host/files/npy_header.h"
#include "host/text/system_path.h"

namespace zentrix::host {

namespace {

/// The element type in a header, without its byte order: "c8".
std::string symbol_of(std::uint32_t code)
{
    const element& type = element_of(code);
    const char kind = type.meaning == element_class::complex ? 'c' : 'f';
    return kind + std::to_string(type.bytes);
}

}  // namespace

std::unique_ptr<npy_stack_reader> npy_stack_reader::open(const std::filesystem::path& file, std::uint32_t code)
{
    std::unique_ptr<npy_stack_reader> opened{new npy_stack_reader{file, code}};
    npy_header header;
    std::vector<std::uint32_t> sizes;
    try {
        header = read_npy_header(opened->from_);
        const std::vector<std::int64_t> announced{header.shape.rbegin(), header.shape.rend()};
        if (announced.size() != 3 || announced[2] == 1) return nullptr;
        sizes = checked_sizes(announced);
    } catch (const header_error&) {
        return nullptr;  // another format, or read_npy has the reason
    }
    const std::string symbol = symbol_of(code);
    if (header.fortran_order || (header.descr != "<" + symbol && header.descr != ">" + symbol)) return nullptr;
    with_file_name(file, [&] {
        require_enough_bytes(sizes, element_of(code).bytes, opened->from_.remaining());
        return 0;
    });
    opened->order_ = header.descr[0] == '>' ? std::endian::big : std::endian::little;
    opened->width_ = sizes[0];
    opened->height_ = sizes[1];
    opened->depth_ = sizes[2];
    return opened;
}

image_ref npy_stack_reader::next()
{
    return with_file_name(file_, [&] {
        const std::uint32_t sizes[] = {width_, height_};
        auto plane = image::create(utf8_path(file_.stem()), code_, sizes);
        read_elements(from_, order_, *plane);
        return plane;
    });
}

npy_stack_writer::npy_stack_writer(const std::filesystem::path& file, std::uint32_t code, std::uint32_t width,
                                   std::uint32_t height, std::uint32_t depth)
    : output_{file}
{
    const std::string header = npy_header_text({"<" + symbol_of(code), false, {depth, height, width}});
    const std::uint64_t plane = std::uint64_t{width} * height * element_of(code).bytes;
    output_.reserve(header.size() + plane * depth);
    output_.write(header.data(), header.size());
}

void npy_stack_writer::append(const image& plane) { output_.write(plane.data(), plane.count() * plane.type().bytes); }

}  // namespace zentrix::host
