#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The typeface of texts in pictures: DejaVu Sans, which is part of the program.
namespace zentrix::host {

/// Receives the pixels of a text: their place from the start of its base line, right and down, and how much of the
/// pixel the letters cover, 1 to 255.
using glyph_pixels = std::function<void(int x, int y, std::uint8_t coverage)>;

/// The width of a line of text. size: of the letters, from the top of the highest to the bottom of the lowest [pixels]
double text_width(std::string_view utf8, double size);

/// The text in at most 8 lines, broken at blanks. Only a word that is wider than `width` [pixels], and the eighth line,
/// may be wider.
std::vector<std::string> text_lines(std::string text, double size, double width);

/// The height of digits and capital letters above the base line.
double capital_height(double size);

/// Calls `use` for the pixels of a line of text that starts at `fraction` (0 to 1) of a pixel. Letters of texts that
/// are not UTF-8 and letters that the typeface does not have are boxes.
void rasterise(std::string_view utf8, double size, double fraction, const glyph_pixels& use);

}  // namespace zentrix::host
