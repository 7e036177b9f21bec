#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "host/files/header_error.h"
#include "host/files/pending_file.h"
#include "host/files/tiff.h"
#include "host/files/tiff_description.h"

// All directories are before the elements, and the file is written from its start to its end, as a pending file is.
namespace zentrix::host {

namespace {

/// Types of a field.
enum field_type : std::uint16_t
{
    ascii = 2,
    short_word = 3,
    long_word = 4,
    rational = 5,
    long_long = 16
};

struct entry
{
    std::uint16_t tag;
    std::uint16_t type;
    std::uint64_t count;
    std::uint64_t value;  ///< or where it is in the file
};

struct sample
{
    std::uint32_t code;
    std::uint16_t format;  ///< 1 unsigned, 2 signed, 3 real
};
constexpr sample samples[] = {{HOST_ELEMENT_UINT8, 1},   {HOST_ELEMENT_UINT16, 1}, {HOST_ELEMENT_UINT32, 1},
                              {HOST_ELEMENT_INT8, 2},    {HOST_ELEMENT_INT16, 2},  {HOST_ELEMENT_INT32, 2},
                              {HOST_ELEMENT_FLOAT32, 3}, {HOST_ELEMENT_FLOAT64, 3}};

/// A number above 0 as a fraction of 32-bit integers: the last convergent of its continued fraction that fits.
std::array<std::uint32_t, 2> fraction(double number)
{
    constexpr double largest = 0xffffffffu;
    double n0 = 0, n1 = 1, d0 = 1, d1 = 0;  // the last two convergents
    for (double rest = number; d1 == 0 || n1 / d1 != number;) {
        const double whole = std::floor(rest);
        const double n2 = whole * n1 + n0, d2 = whole * d1 + d0;
        if (!(n2 <= largest && d2 <= largest)) break;
        n0 = n1, n1 = n2, d0 = d1, d1 = d2;
        if (rest == whole) break;
        rest = 1 / (rest - whole);
    }
    if (d1 == 0 || n1 == 0) return {0, 1};  // out of range: not known
    return {static_cast<std::uint32_t>(n1), static_cast<std::uint32_t>(d1)};
}

/// Little-endian numbers one after another; offsets have 8 bytes in a BigTIFF file.
struct bytes_of_head
{
    bool is_big = false;
    std::string text;

    void put(std::uint64_t value, std::size_t bytes)
    {
        for (std::size_t i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i));
    }
    void put_offset(std::uint64_t value) { put(value, is_big ? 8 : 4); }
    void put_rational(double number)
    {
        for (const std::uint32_t part : fraction(number)) put(part, 4);
    }
};

class tiff_writer
{
  public:
    tiff_writer(const image& pixels, std::uint16_t format) : pixels_{pixels}, format_{format}
    {
        pages_ = pixels.size(2);
        plane_bytes_ = std::uint64_t{pixels.size(0)} * pixels.size(1) * pixels.type().bytes;
        description_ = tiff_description(pixels.scale(), pages_);
        description_ += '\0';
        description_.resize((description_.size() + 7) / 8 * 8);
        constexpr std::uint64_t largest_offset = 0xffffffffu;
        constexpr std::uint64_t room = 1 << 12, page_room = 256;  // more than the directories take
        is_big_ = plane_bytes_ * pages_ + room + page_room * pages_ + description_.size() > largest_offset;
    }

    /// Everything before the first element.
    std::string head() const
    {
        const std::uint64_t start = is_big_ ? 16 : 8;
        const std::uint64_t resolution_at = start, description_at = resolution_at + 16;
        const std::uint64_t first_directory = description_at + description_.size();
        const std::uint64_t size = directory(0, 0, 0, 0).size();
        const std::uint64_t elements_at = first_directory + size * pages_;

        bytes_of_head head{is_big_, is_big_ ? std::string{"II+\0\x08\0\0\0", 8} : std::string{"II*\0", 4}};
        head.put_offset(first_directory);
        for (const std::size_t d : {0u, 1u}) head.put_rational(per_unit(d));
        head.text += description_;
        for (std::uint32_t page = 0; page < pages_; ++page) {
            const std::uint64_t next = page + 1 < pages_ ? first_directory + size * (page + 1) : 0;
            head.text += directory(elements_at + page * plane_bytes_, next, resolution_at, description_at);
        }
        return head.text;
    }

  private:
    /// Pixels per unit; 0: not known.
    double per_unit(std::size_t d) const
    {
        const double step = pixels_.scale().axes[d].step;
        return step > 0 ? 1 / step : 0;
    }

    /// One page: the entries in the order of their tags.
    std::string directory(std::uint64_t elements, std::uint64_t next, std::uint64_t resolution,
                          std::uint64_t description) const
    {
        const std::uint16_t offset = is_big_ ? long_long : long_word;
        std::vector<entry> entries{{256, long_word, 1, pixels_.size(0)},
                                   {257, long_word, 1, pixels_.size(1)},
                                   {258, short_word, 1, 8 * pixels_.type().bytes},
                                   {259, short_word, 1, 1},   // no compression
                                   {262, short_word, 1, 1}};  // 0 is black
        const std::size_t length = std::strlen(description_.c_str());
        if (length > 0) entries.push_back({270, ascii, length + 1, description});
        entries.push_back({273, offset, 1, elements});
        entries.push_back({277, short_word, 1, 1});  // channels
        entries.push_back({278, long_word, 1, pixels_.size(1)});
        entries.push_back({279, offset, 1, plane_bytes_});
        if (per_unit(0) > 0 && per_unit(1) > 0) {
            entries.push_back({282, rational, 1, resolution});
            entries.push_back({283, rational, 1, resolution + 8});
            entries.push_back({296, short_word, 1, 1});  // the unit is in the description
        }
        entries.push_back({339, short_word, 1, format_});

        bytes_of_head page{is_big_, {}};
        page.put(entries.size(), is_big_ ? 8 : 2);
        for (const entry& one : entries) {
            page.put(one.tag, 2);
            page.put(one.type, 2);
            page.put_offset(one.count);
            if (one.type == rational && is_big_)  // 8 bytes are not elsewhere in the file
                page.put_rational(per_unit(one.tag - 282u));
            else
                page.put_offset(one.value);
        }
        page.put_offset(next);
        return page.text;
    }

    const image& pixels_;
    std::uint16_t format_;
    std::uint32_t pages_ = 1;
    std::uint64_t plane_bytes_ = 0;
    bool is_big_ = false;
    std::string description_;  ///< ends with zeros
};

}  // namespace

const char no_complex_tiff[] =
    "cannot be written: TIFF files have no complex numbers; .npy and .mrc keep them, and zentrix call ZXAbsArg gives "
    "modulus and phase";

void write_tiff(const std::filesystem::path& file, const image& pixels)
{
    const auto* const found = std::ranges::find(samples, pixels.code(), &sample::code);
    if (pixels.type().meaning == element_class::complex) throw file_error{file, no_complex_tiff};
    if (found == std::end(samples))
        throw file_error{file, std::string{"an image of type "} + pixels.type().name + " cannot be written as .tif"};

    const image_ref copy = pixels.is_contiguous() ? nullptr : pixels.clone();
    const std::string head = tiff_writer{pixels, found->format}.head();
    const std::size_t bytes = pixels.count() * pixels.type().bytes;
    pending_file output{file};
    output.reserve(head.size() + bytes);
    output.write(head.data(), head.size());
    output.write(copy ? copy->data() : pixels.data(), bytes);
    output.commit();
}

}  // namespace zentrix::host
