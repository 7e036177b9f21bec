#include "host/files/tiff.h"

#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <optional>

#include "host/files/binary_input.h"
#include "host/files/header_error.h"
#include "host/files/tiff_description.h"

namespace zentrix::host {

namespace {

constexpr std::size_t most_pages = 65535;

/// The file as LibTIFF reads it, and what LibTIFF reports. Its own handlers would print.
struct source
{
    explicit source(const std::filesystem::path& file) : input{file} {}

    binary_input input;
    std::string problem;  ///< the first one; empty: none
};

tmsize_t read_some(thandle_t handle, void* to, tmsize_t bytes) noexcept
try {
    auto& from = static_cast<source*>(handle)->input;
    const auto count = std::min(static_cast<std::uint64_t>(std::max<tmsize_t>(bytes, 0)), from.remaining());
    from.read(to, count);
    return static_cast<tmsize_t>(count);
} catch (const std::exception&) {
    return -1;
}

toff_t seek_to(thandle_t handle, toff_t offset, int whence) noexcept
try {
    auto& from = static_cast<source*>(handle)->input;
    const std::uint64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? from.position() : from.size();
    from.seek(base + offset);  // a negative offset wraps around
    return from.position();
} catch (const std::exception&) {
    return static_cast<toff_t>(-1);
}

toff_t size_of(thandle_t handle) noexcept { return static_cast<source*>(handle)->input.size(); }

tmsize_t write_nothing(thandle_t, void*, tmsize_t) noexcept { return -1; }
int close_nothing(thandle_t) noexcept { return 0; }

/// Keeps the first error. Returns 1: it has been dealt with.
int keep_problem(TIFF*, void* user, const char*, const char* text, va_list arguments) noexcept
{
    char line[256];
    std::vsnprintf(line, sizeof line, text, arguments);
    std::replace_if(
        std::begin(line), std::end(line), [](char c) { return c != 0 && (c < ' ' || c > '~'); }, '?');
    std::string& problem = static_cast<source*>(user)->problem;
    try {
        if (problem.empty()) problem = line;
    } catch (const std::bad_alloc&) {
    }
    return 1;
}

int ignore_warning(TIFF*, void*, const char*, const char*, va_list) noexcept { return 1; }

struct closer
{
    void operator()(TIFF* file) const noexcept { TIFFClose(file); }
    void operator()(TIFFOpenOptions* options) const noexcept { TIFFOpenOptionsFree(options); }
};

template <class T>
T field(TIFF* tiff, std::uint32_t tag, T otherwise)
{
    T value{};
    return TIFFGetFieldDefaulted(tiff, tag, &value) == 1 ? value : otherwise;
}

/// How the elements of a page are stored.
struct page
{
    std::uint64_t directory = 0;  ///< position in the file
    std::uint32_t width = 0, height = 0;
    std::uint32_t code = 0;
    std::uint16_t compression = COMPRESSION_NONE;

    bool is_like(const page& other) const
    {
        return width == other.width && height == other.height && code == other.code;
    }
};

/// The element type of a page, or nothing.
std::optional<std::uint32_t> code_of(std::uint16_t format, std::uint16_t bits)
{
    switch (format) {
        case SAMPLEFORMAT_UINT:
        case SAMPLEFORMAT_VOID:
            if (bits == 8) return HOST_ELEMENT_UINT8;
            if (bits == 16) return HOST_ELEMENT_UINT16;
            if (bits == 32) return HOST_ELEMENT_UINT32;
            return std::nullopt;
        case SAMPLEFORMAT_INT:
            if (bits == 8) return HOST_ELEMENT_INT8;
            if (bits == 16) return HOST_ELEMENT_INT16;
            if (bits == 32) return HOST_ELEMENT_INT32;
            return std::nullopt;
        case SAMPLEFORMAT_IEEEFP:
            if (bits == 32) return HOST_ELEMENT_FLOAT32;
            if (bits == 64) return HOST_ELEMENT_FLOAT64;
            return std::nullopt;
        case SAMPLEFORMAT_COMPLEXIEEEFP:
            if (bits == 64) return HOST_ELEMENT_COMPLEX64;
            if (bits == 128) return HOST_ELEMENT_COMPLEX128;
            return std::nullopt;
        default: return std::nullopt;
    }
}

/// By how much a compression can shrink elements at most; 0 for one that is not read.
std::uint64_t largest_ratio(std::uint16_t compression)
{
    switch (compression) {
        case COMPRESSION_NONE: return 1;
        case COMPRESSION_PACKBITS: return 64;  // 128 bytes from 2
        case COMPRESSION_LZW: return 4096;     // a string from 12 bits
        case COMPRESSION_DEFLATE:
        case COMPRESSION_ADOBE_DEFLATE: return 1100;  // zlib's documentation has 1032
        default: return 0;
    }
}

class tiff_reader
{
  public:
    explicit tiff_reader(const std::filesystem::path& file) : source_{file}
    {
        const std::unique_ptr<TIFFOpenOptions, closer> options{TIFFOpenOptionsAlloc()};
        if (!options) throw std::bad_alloc{};
        TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keep_problem, &source_);
        TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignore_warning, nullptr);
        constexpr std::uint64_t enough = 1 << 20;  // for the tables of a small file
        TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(2 * source_.input.size() + enough));
        // m: without mapping; O: tables of strips are loaded when they are needed
        tiff_.reset(TIFFClientOpenExt("", "rmO", &source_, read_some, write_nothing, seek_to, close_nothing, size_of,
                                      nullptr, nullptr, options.get()));
        if (!tiff_) fail();
    }

    image_ref read(const std::string& name)
    {
        const auto pages = read_pages();
        const page& first = pages.front();
        const std::uint32_t described = images_in(description_);
        const bool has_more_images = pages.size() == 1 && described > 1 && first.compression == COMPRESSION_NONE;
        const std::int64_t depth = has_more_images ? described : static_cast<std::int64_t>(pages.size());
        const std::int64_t announced[] = {first.width, first.height, depth};
        const auto sizes = checked_sizes(announced);
        std::uint64_t ratio = 0;
        for (const page& one : pages) ratio = std::max(ratio, largest_ratio(one.compression));
        require_enough_bytes(sizes, element_of(first.code).bytes, source_.input.size() * ratio);

        auto result = image::create(name, first.code, sizes);
        auto* to = static_cast<std::byte*>(result->data());
        const std::size_t plane = std::size_t{first.width} * first.height * result->type().bytes;
        if (has_more_images) {
            read_following(*result);
        } else {
            for (const page& one : pages) {
                if (pages.size() > 1) check(TIFFSetSubDirectory(tiff_.get(), one.directory) == 1);
                read_page({to, plane}, one, result->type());
                to += plane;
            }
        }
        result->set_scale(tiff_scale(description_, resolution_));
        return result;
    }

  private:
    [[noreturn]] void fail() const
    {
        throw header_error{"it is damaged: " + (source_.problem.empty() ? "it ends too early" : source_.problem)};
    }
    void check(bool succeeded) const
    {
        if (!succeeded) fail();
    }

    std::vector<page> read_pages()
    {
        std::vector<page> pages;
        std::size_t directories = 0;
        do {
            if (++directories > most_pages)
                throw header_error{"it has more than " + std::to_string(most_pages) + " pages"};
            constexpr std::uint32_t reduced = FILETYPE_REDUCEDIMAGE | FILETYPE_MASK;
            if (!pages.empty() && (field<std::uint32_t>(tiff_.get(), TIFFTAG_SUBFILETYPE, 0) & reduced) != 0) continue;
            if (pages.empty()) read_description();
            pages.push_back(present_page());
            if (!pages.back().is_like(pages.front()))
                throw header_error{"page " + std::to_string(directories) +
                                   " differs from page 1 in size or type; expected pages of one kind"};
        } while (TIFFReadDirectory(tiff_.get()) == 1);
        if (!source_.problem.empty()) fail();
        return pages;
    }

    page present_page() const
    {
        TIFF* const tiff = tiff_.get();
        page found;
        found.directory = TIFFCurrentDirOffset(tiff);
        found.width = field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
        found.height = field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
        found.compression = field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
        const auto channels = field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
        const auto bits = field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
        const auto format = field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
        if (channels != 1)
            throw header_error{"its pixels have " + std::to_string(channels) +
                               " channels, as colour pictures have; expected one"};
        if (largest_ratio(found.compression) == 0)
            throw header_error{"it is compressed by method " + std::to_string(found.compression) +
                               "; expected none, LZW, Deflate or PackBits"};
        const auto code = code_of(format, bits);
        if (!code)
            throw header_error{"its elements have " + std::to_string(bits) + " bits in format " +
                               std::to_string(format) +
                               "; expected integers of 8, 16 or 32 bits, or real or complex numbers of single or "
                               "double precision"};
        found.code = *code;
        return found;
    }

    void read_description()
    {
        TIFF* const tiff = tiff_.get();
        const char* text = nullptr;
        if (TIFFGetField(tiff, TIFFTAG_IMAGEDESCRIPTION, &text) == 1 && text != nullptr) description_ = text;
        float per_unit = 0;
        if (TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &per_unit) == 1) resolution_.x = per_unit;
        if (TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &per_unit) == 1) resolution_.y = per_unit;
        switch (field<std::uint16_t>(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH)) {
            case RESUNIT_INCH: resolution_.unit_nm = 25.4e6; break;
            case RESUNIT_CENTIMETER: resolution_.unit_nm = 1e7; break;
            default: break;
        }
    }

    /// The images that follow the first one, which has the only page.
    void read_following(image& to)
    {
        const std::uint64_t first = TIFFGetStrileOffset(tiff_.get(), 0);
        check(source_.problem.empty());
        source_.input.seek(first);
        const std::uint32_t sizes[] = {to.size(0), to.size(1), to.size(2)};
        require_enough_bytes(sizes, to.type().bytes, source_.input.remaining());
        read_elements(source_.input, TIFFIsByteSwapped(tiff_.get()) != 0 ? std::endian::big : std::endian::little, to);
    }

    void read_page(std::span<std::byte> to, const page& one, const element& type)
    {
        const std::size_t row = std::size_t{one.width} * type.bytes;
        if (TIFFIsTiled(tiff_.get()) != 0) return read_tiles(to, row, type.bytes);
        const auto rows = std::min(field<std::uint32_t>(tiff_.get(), TIFFTAG_ROWSPERSTRIP, one.height), one.height);
        check(rows > 0);
        for (std::uint32_t strip = 0; !to.empty(); ++strip) {
            const auto part = to.first(std::min(row * rows, to.size()));
            const auto bytes = static_cast<tmsize_t>(part.size());
            check(TIFFReadEncodedStrip(tiff_.get(), strip, part.data(), bytes) == bytes);
            to = to.subspan(part.size());
        }
    }

    void read_tiles(std::span<std::byte> to, std::size_t row, std::size_t element_bytes)
    {
        const std::size_t tile_row = field<std::uint32_t>(tiff_.get(), TIFFTAG_TILEWIDTH, 0) * element_bytes;
        const std::size_t tile_rows = field<std::uint32_t>(tiff_.get(), TIFFTAG_TILELENGTH, 0);
        const std::size_t height = to.size() / row;
        check(tile_row > 0 && tile_rows > 0);
        // Tiles at the edges are larger than the image's part of them, but not by orders of magnitude.
        constexpr std::size_t smallest = 1 << 22;
        if (tile_rows > (16 * to.size() + smallest) / tile_row)
            throw header_error{"its tiles are larger than the image"};
        std::vector<std::byte> tile(tile_row * tile_rows);
        std::uint32_t index = 0;
        for (std::size_t top = 0; top < height; top += tile_rows)
            for (std::size_t left = 0; left < row; left += tile_row, ++index) {
                const auto bytes = static_cast<tmsize_t>(tile.size());
                check(TIFFReadEncodedTile(tiff_.get(), index, tile.data(), bytes) == bytes);
                for (std::size_t y = top; y < std::min(top + tile_rows, height); ++y)
                    std::copy_n(&tile[(y - top) * tile_row], std::min(tile_row, row - left), &to[y * row + left]);
            }
    }

    source source_;
    std::unique_ptr<TIFF, closer> tiff_;
    std::string description_;
    tiff_resolution resolution_;
};

}  // namespace

image_ref read_tiff(const std::filesystem::path& file)
{
    return with_file_name(file, [&] { return tiff_reader{file}.read(utf8_path(file.stem())); });
}

bool is_tiff(std::string_view start) noexcept
{
    using namespace std::string_view_literals;
    return start.starts_with("II*\0"sv) || start.starts_with("MM\0*"sv) || start.starts_with("II+\0"sv) ||
           start.starts_with("MM\0+"sv);
}

}  // namespace zentrix::host
