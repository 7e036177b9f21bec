#include "host/files/png.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <new>

#include "host/files/file_error.h"
#include "host/objects/value.h"
#include "host/text/number_text.h"

// The format is that of the PNG specification, third edition (W3C, 2023).
namespace zentrix::host {

namespace {

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t chunk_bytes = 65536;

std::array<std::uint8_t, 4> big_endian(std::size_t number)
{
    const auto value = static_cast<std::uint32_t>(number);
    return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
            static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

enum filter : std::uint8_t
{
    no_filter,
    left_filter,
    up_filter,
    average_filter,
    paeth_filter,
    filter_count
};

/// The neighbour that is nearest to left + up - diagonal.
int paeth(int left, int up, int diagonal)
{
    const int to_left = std::abs(up - diagonal), to_up = std::abs(left - diagonal),
              to_diagonal = std::abs(left + up - 2 * diagonal);
    if (to_left <= to_up && to_left <= to_diagonal) return left;
    return to_up <= to_diagonal ? up : diagonal;
}

int predicted(filter kind, int left, int up, int diagonal)
{
    switch (kind) {
        case left_filter: return left;
        case up_filter: return up;
        case average_filter: return (left + up) / 2;
        case paeth_filter: return paeth(left, up, diagonal);
        default: return 0;
    }
}

/// Writes the filter's number and the differences from the predicted bytes; returns the sum of their magnitudes, which
/// is the usual measure of how well the row will compress.
std::size_t apply_filter(filter kind, std::span<const std::uint8_t> row, const std::vector<std::uint8_t>& former,
                         std::size_t pixel_bytes, std::vector<std::uint8_t>& filtered)
{
    std::size_t sum = 0;
    filtered[0] = kind;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const bool is_first = i < pixel_bytes;
        const int left = is_first ? 0 : row[i - pixel_bytes], diagonal = is_first ? 0 : former[i - pixel_bytes];
        const auto difference = static_cast<std::uint8_t>(row[i] - predicted(kind, left, former[i], diagonal));
        filtered[i + 1] = difference;
        sum += static_cast<std::size_t>(std::abs(static_cast<std::int8_t>(difference)));
    }
    return sum;
}

}  // namespace

struct png_writer::compressor
{
    compressor()
    {
        if (deflateInit(&stream, Z_DEFAULT_COMPRESSION) != Z_OK) throw std::bad_alloc{};
    }
    ~compressor() { deflateEnd(&stream); }
    compressor(const compressor&) = delete;
    compressor& operator=(const compressor&) = delete;

    z_stream stream{};
    std::vector<std::uint8_t> room = std::vector<std::uint8_t>(chunk_bytes);
};

png_writer::png_writer(pending_file& output, int width, int height, int channels, const picture_texts& texts)
    : output_{output}, compressor_{std::make_unique<compressor>()}, pixel_bytes_{static_cast<std::size_t>(channels)}
{
    former_row_.resize(static_cast<std::size_t>(width) * pixel_bytes_);
    filtered_.resize(former_row_.size() + 1);
    best_.resize(filtered_.size());
    std::array<std::uint8_t, 13> header{};
    std::ranges::copy(big_endian(static_cast<std::size_t>(width)), header.begin());
    std::ranges::copy(big_endian(static_cast<std::size_t>(height)), header.begin() + 4);
    header[8] = 8;                      // bits per channel
    header[9] = channels == 1 ? 0 : 2;  // grey or colour; the rest is 0: deflate, five filters, not interlaced
    output_.write(signature.data(), signature.size());
    write_chunk("IHDR", header);
    for (const auto& [keyword, text] : texts) {
        const text_chunk chunk = text_chunk_of(keyword, text);
        write_chunk(chunk.type, chunk.data);
    }
}

png_writer::~png_writer() = default;

void png_writer::write_chunk(const char (&type)[5], std::span<const std::uint8_t> data)
{
    auto sum = crc32_z(0, reinterpret_cast<const Bytef*>(type), 4);
    if (!data.empty()) sum = crc32_z(sum, data.data(), data.size());  // a null pointer would restart the sum
    output_.write(big_endian(data.size()).data(), 4);
    output_.write(type, 4);
    output_.write(data.data(), data.size());
    output_.write(big_endian(sum).data(), 4);
}

void png_writer::compress(std::span<const std::uint8_t> bytes, int flush)
{
    z_stream& stream = compressor_->stream;
    auto& room = compressor_->room;
    stream.next_in = const_cast<Bytef*>(bytes.data());  // zlib does not write there
    stream.avail_in = 0;
    for (std::size_t left = bytes.size();;) {
        if (stream.avail_in == 0) {  // a row may be longer than zlib's counter
            stream.avail_in = static_cast<uInt>(std::min<std::size_t>(left, 1U << 30));
            left -= stream.avail_in;
        }
        if (stream.avail_out == 0) {
            if (stream.next_out != nullptr) write_chunk("IDAT", room);
            stream.next_out = room.data();
            stream.avail_out = static_cast<uInt>(room.size());
        }
        const int state = deflate(&stream, left > 0 ? Z_NO_FLUSH : flush);
        const bool is_done = flush == Z_FINISH ? state == Z_STREAM_END : stream.avail_in == 0 && left == 0;
        if (is_done) return;
    }
}

void png_writer::write_row(std::span<const std::uint8_t> row)
{
    std::size_t smallest = apply_filter(no_filter, row, former_row_, pixel_bytes_, best_);
    for (int kind = left_filter; kind < filter_count; ++kind) {
        const std::size_t sum = apply_filter(static_cast<filter>(kind), row, former_row_, pixel_bytes_, filtered_);
        if (sum >= smallest) continue;
        smallest = sum;
        best_.swap(filtered_);
    }
    compress(best_, Z_NO_FLUSH);
    std::ranges::copy(row, former_row_.begin());
}

void png_writer::finish()
{
    compress({}, Z_FINISH);
    write_chunk("IDAT", std::span{compressor_->room}.first(compressor_->room.size() - compressor_->stream.avail_out));
    write_chunk("IEND", {});
}

void write_png(const std::filesystem::path& file, const picture& shown, const picture_texts& texts)
{
    pending_file output{file};
    png_writer png{output, shown.width, shown.height, shown.channels, texts};
    const auto row_bytes = static_cast<std::size_t>(shown.width) * static_cast<std::size_t>(shown.channels);
    for (std::size_t y = 0; y < static_cast<std::size_t>(shown.height); ++y)
        png.write_row(std::span{shown.bytes}.subspan(y * row_bytes, row_bytes));
    png.finish();
    output.commit();
}

shown_range write_png(const std::filesystem::path& file, const image& pixels, const figure_style& style,
                      const picture_texts& texts)
try {
    figure shown{pixels, style};
    picture_texts all = texts_of(shown.range());
    all.insert(all.begin(), texts.begin(), texts.end());
    pending_file output{file};
    png_writer png{output, shown.width(), shown.height(), shown.channels(), all};
    std::vector<std::uint8_t> row(static_cast<std::size_t>(shown.width()) * static_cast<std::size_t>(shown.channels()));
    for (int y = 0; y < shown.height(); ++y) {
        shown.paint_next_row(row.data());
        png.write_row(row);
    }
    png.finish();
    output.commit();
    return shown.range();
} catch (const script_error& problem) {  // elements without numbers
    throw file_error{file, problem.what()};
}

void write_png(const std::filesystem::path& file, const image& pixels, display_mode mode, palette shades)
{
    figure_style style;
    style.shown = mode;
    style.shades = shades;
    write_png(file, pixels, style);
}

picture_texts texts_of(const shown_range& range)
{
    const std::string shown = range.shades == palette::wave ? "wave" : word_for(range.shown);
    if (range.shades == palette::cyclic) return {{"Shown", shown}};
    return {{"Shown", shown}, {"Limits", number_text(range.limits.black) + "," + number_text(range.limits.white)}};
}

grey_limits limits_in(const std::filesystem::path& png, const shown_range& wanted)
{
    std::map<std::string, std::string> texts;
    for (const auto& [keyword, text] : read_png_texts(png)) texts.insert({keyword, text});
    const std::string shown = texts_of(wanted).front().second, limits = texts["Limits"];
    const auto comma = limits.find(',');
    const auto black = parse_number<float>(limits.substr(0, comma));
    const auto white = parse_number<float>(comma == std::string::npos ? "" : limits.substr(comma + 1));
    if (!black || !white) throw file_error{png, "names no limits: expected a picture that zentrix wrote in greys"};
    if (texts["Shown"] != shown) throw file_error{png, "has limits of: " + texts["Shown"] + "; expected: " + shown};
    return {*black, *white};
}

}  // namespace zentrix::host
