#include "host/pictures/font.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#define STB_TRUETYPE_IMPLEMENTATION
#define STBTT_STATIC
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_truetype.h>
#pragma GCC diagnostic pop

extern "C" const unsigned char zentrix_font_file[];  // font_file.cpp

namespace zentrix::host {

namespace {

const stbtt_fontinfo& typeface()
{
    static const stbtt_fontinfo loaded = [] {
        stbtt_fontinfo font{};
        if (stbtt_InitFont(&font, zentrix_font_file, 0) == 0) throw std::logic_error{"the typeface cannot be read"};
        return font;
    }();
    return loaded;
}

/// The code points of a text; U+FFFD for bytes that are not UTF-8.
std::vector<int> code_points(std::string_view utf8)
{
    std::vector<int> points;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i++]);
        const int further = lead < 0x80 ? 0 : lead >> 5 == 6 ? 1 : lead >> 4 == 14 ? 2 : lead >> 3 == 30 ? 3 : -1;
        int point = further <= 0 ? lead : lead & 0x3F >> further;
        bool is_valid = further >= 0;
        for (int k = 0; k < further && is_valid; ++k) {
            is_valid = i < utf8.size() && (static_cast<unsigned char>(utf8[i]) & 0xC0) == 0x80;
            if (is_valid) point = point << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3F);
        }
        points.push_back(is_valid ? point : 0xFFFD);
    }
    return points;
}

/// Calls use(glyph, place) for each letter; returns the width of all.
template <class F>
double for_each_letter(std::string_view utf8, double size, F use)
{
    const stbtt_fontinfo& font = typeface();
    const double scale = static_cast<double>(stbtt_ScaleForPixelHeight(&font, static_cast<float>(size)));
    double place = 0;
    int former = 0;
    for (const int point : code_points(utf8)) {
        const int glyph = stbtt_FindGlyphIndex(&font, point);
        if (former != 0) place += scale * stbtt_GetGlyphKernAdvance(&font, former, glyph);
        use(glyph, place);
        int advance = 0;
        stbtt_GetGlyphHMetrics(&font, glyph, &advance, nullptr);
        place += scale * advance;
        former = glyph;
    }
    return place;
}

}  // namespace

double text_width(std::string_view utf8, double size)
{
    return for_each_letter(utf8, size, [](int, double) {});
}

std::vector<std::string> text_lines(std::string text, double size, double width)
{
    constexpr std::size_t most = 8;
    std::vector<std::string> lines;
    while (!text.empty()) {
        std::size_t end = text.size();
        while (text_width(std::string_view{text}.substr(0, end), size) > width && lines.size() + 1 < most) {
            const auto blank = text.rfind(' ', end - 1);
            if (blank == std::string::npos || blank == 0) break;
            end = blank;
        }
        lines.push_back(text.substr(0, end));
        text.erase(0, std::min(end + 1, text.size()));
    }
    return lines;
}

double capital_height(double size) { return 0.626 * size; }  // 1493 of 2384 units

void rasterise(std::string_view utf8, double size, double fraction, const glyph_pixels& use)
{
    const stbtt_fontinfo& font = typeface();
    const float scale = stbtt_ScaleForPixelHeight(&font, static_cast<float>(size));
    std::vector<std::uint8_t> bitmap;
    for_each_letter(utf8, size, [&](int glyph, double place) {
        const double start = place + fraction, whole = std::floor(start);
        const auto shift = static_cast<float>(start - whole);
        int left = 0, top = 0, right = 0, bottom = 0;
        stbtt_GetGlyphBitmapBoxSubpixel(&font, glyph, scale, scale, shift, 0, &left, &top, &right, &bottom);
        const int width = right - left, height = bottom - top;
        if (width <= 0 || height <= 0) return;
        bitmap.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
        stbtt_MakeGlyphBitmapSubpixel(&font, bitmap.data(), width, height, width, scale, scale, shift, 0, glyph);
        const std::uint8_t* coverage = bitmap.data();
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x, ++coverage)
                if (*coverage > 0) use(static_cast<int>(whole) + x, y, *coverage);
    });
}

}  // namespace zentrix::host
