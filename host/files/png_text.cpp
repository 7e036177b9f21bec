#include "host/files/png_text.h"

#include <algorithm>
#include <string_view>

#include "host/files/file_error.h"
#include "host/files/input_file.h"

namespace zentrix::host {

namespace {

constexpr char plain_text[] = "tEXt", international_text[] = "iTXt";
constexpr std::size_t longest_keyword = 79;
constexpr std::size_t longest_text = 1U << 20;  // that is read; those of this program are much shorter
constexpr std::string_view png_signature{"\x89PNG\r\n\x1A\n"};

std::string_view until_zero(std::string_view text) { return text.substr(0, text.find('\0')); }

std::size_t big_endian_number(std::string_view bytes)
{
    std::size_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
}

/// The text of a chunk's data; nothing in it for compressed ones.
std::pair<std::string, std::string> text_in(std::string_view data, bool is_international)
{
    const auto keyword = until_zero(data);
    data.remove_prefix(std::min(keyword.size() + 1, data.size()));
    if (is_international) {
        if (data.size() < 2 || data[0] != 0) return {std::string{keyword}, ""};
        data.remove_prefix(2);  // flag and method of compression; then language and translated keyword
        for (int i = 0; i < 2; ++i) data.remove_prefix(std::min(until_zero(data).size() + 1, data.size()));
    }
    return {std::string{keyword}, std::string{data}};
}

}  // namespace

text_chunk text_chunk_of(const std::string& keyword, const std::string& text)
{
    const auto content = until_zero(text);
    const bool is_ascii = std::ranges::all_of(content, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    std::vector<std::uint8_t> data;
    const auto append = [&](std::string_view part) { data.insert(data.end(), part.begin(), part.end()); };
    append(until_zero(keyword).substr(0, longest_keyword));
    data.push_back(0);
    if (!is_ascii) append(std::string_view{"\0\0\0\0", 4});  // not compressed; no language, no translated keyword
    append(content);
    return {is_ascii ? plain_text : international_text, std::move(data)};
}

picture_texts read_png_texts(const std::filesystem::path& file)
{
    auto from = open_input(file);
    const auto read = [&](std::size_t count) {
        std::string bytes(count, '\0');
        if (!from.read(bytes.data(), static_cast<std::streamsize>(count))) throw file_error{file, "it is cut short"};
        return bytes;
    };
    std::string start(png_signature.size(), '\0');
    if (!from.read(start.data(), static_cast<std::streamsize>(start.size())) || start != png_signature)
        throw file_error{file, "is not a PNG file"};
    picture_texts texts;
    for (;;) {
        const std::string head = read(8), type = head.substr(4);
        if (type == "IDAT" || type == "IEND") return texts;
        const std::size_t length = big_endian_number(head);
        const bool is_text = (type == plain_text || type == international_text) && length <= longest_text;
        if (is_text) texts.push_back(text_in(read(length), type == international_text));
        from.ignore(static_cast<std::streamsize>((is_text ? 0 : length) + 4));  // and the checksum
    }
}

}  // namespace zentrix::host
