#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace zentrix::host {

/// Texts that a picture carries, each with its keyword: {"Command", "zentrix correct wave.npy -o out.png"}. Viewers
/// show them as comments or properties. Keywords have 1 to 79 bytes of ASCII; texts are UTF-8.
using picture_texts = std::vector<std::pair<std::string, std::string>>;

/// A chunk of a PNG file, without length and checksum.
struct text_chunk
{
    const char (&type)[5];
    std::vector<std::uint8_t> data;
};

/// The chunk for a text: tEXt for ASCII, otherwise iTXt, not compressed. A zero byte ends the text; of the keyword, the
/// first 79 bytes are used.
text_chunk text_chunk_of(const std::string& keyword, const std::string& text);

/// The texts of a PNG file that are in front of its pixels, as this program writes them.
/// Throws  file_error for a file that is missing, cut short or no PNG
picture_texts read_png_texts(const std::filesystem::path& file);

}  // namespace zentrix::host
