#include "host/program/ctf_figure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "host/correction/contrast_plot.h"
#include "host/correction/undersampled.h"
#include "host/parallel/for_each_row.h"
#include "host/pictures/drawing.h"
#include "host/pictures/font.h"
#include "host/pictures/plot.h"
#include "host/pictures/zoom.h"

namespace zentrix::program {

namespace {

using host::box;
using host::point;
using host::rgb;

/// Red, green and blue of the square, and whether a pixel of it is undersampled.
host::picture paint_square(const transfer_function& shown, bool& is_undersampled)
{
    const auto size = static_cast<std::size_t>(shown.size);
    host::picture painted{shown.size, shown.size, 3, std::vector<std::uint8_t>(size * size * 3)};
    std::vector<std::uint8_t> marks(size);
    const auto* const values = static_cast<const float*>(shown.square->data());
    host::for_each_row(
        shown.size, host::threads_for(std::ptrdiff_t{shown.size} * shown.size), [&](std::size_t, std::size_t y) {
            std::uint8_t* to = &painted.bytes[y * size * 3];
            for (int x = 0; x < shown.size; ++x) {
                const auto frequency = shown.frequency(x, static_cast<int>(y));
                const float value = values[y * size + static_cast<std::size_t>(x)];
                const auto grey = static_cast<std::uint8_t>(std::lround(127.5F + 127.5F * value));
                const bool hidden =
                    lens::largest_phase_step(shown.arguments, frequency, shown.distance()) > std::numbers::pi;
                if (hidden) marks[y] = 1;
                to = std::ranges::copy(hidden ? host::undersampled_ink : rgb{grey, grey, grey}, to).out;
            }
        });
    is_undersampled = std::ranges::count(marks, 1) > 0;
    return painted;
}

host::picture zoomed(const host::picture& from, int side)
{
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    host::zoom(from, side, side, pixels.data());
    host::picture to{side, side, 3, {}};
    to.bytes.reserve(pixels.size() * 3);
    for (const std::uint32_t pixel : pixels)
        for (const int shift : {16, 8, 0}) to.bytes.push_back(static_cast<std::uint8_t>(pixel >> shift));
    return to;
}

/// Entries in a row: a sample of the ink and a text.
class key_row
{
  public:
    key_row(host::drawing& on, point start, double letters) : on_{on}, at_{start}, letters_{letters} {}

    void add_line(rgb ink, bool is_dashed, const std::string& text)
    {
        const double middle = at_.y - host::capital_height(letters_) / 2, length = 1.7 * letters_;
        std::vector<point> line;
        for (double x = 0; x <= length; x += 0.5) line.push_back({at_.x + x, middle});
        const double width = std::max(1.3, letters_ / 11);
        if (is_dashed)
            host::dashed(on_, line, width, length / 5, ink);
        else
            on_.line(line, width, ink);
        add_text(length, text);
    }
    void add_dot(rgb ink, const std::string& text)
    {
        const point p{at_.x + 0.3 * letters_, at_.y - host::capital_height(letters_) / 2};
        const std::vector<point> dot{p, p};
        on_.line(dot, 0.5 * letters_, ink);
        on_.line(dot, 0.25 * letters_, host::white_paper);
        add_text(0.6 * letters_, text);
    }
    void add_area(rgb ink, const std::string& text)
    {
        const box area{at_.x, at_.y - letters_ * 0.75, at_.x + letters_, at_.y + letters_ * 0.1};
        on_.fill(area, ink);
        on_.frame(area, 1, host::black_ink);
        add_text(letters_, text);
    }

  private:
    void add_text(double gap, const std::string& text)
    {
        at_.x += gap + 0.4 * letters_;
        on_.text(at_, letters_, host::alignment::left, text, host::black_ink);
        at_.x += host::text_width(text, letters_) + 1.2 * letters_;
    }

    host::drawing& on_;
    point at_;
    double letters_;
};

}  // namespace

std::string with_spacing(double frequency)
{
    const auto unit = host::frequency_unit_for(frequency);
    char text[80];
    std::snprintf(text, sizeof text, "%.3g %s (%.3g %s)", frequency * unit.per_nm, unit.name,
                  1 / (frequency * unit.per_nm), unit.spacing);
    return text;
}

host::picture paint(const transfer_function& shown)
{
    const int side = std::clamp(shown.size, 512, 2048);
    const double letters = side / 30.0;
    const auto whole = [&](double in_letters) { return static_cast<int>(std::lround(in_letters * letters)); };
    const int left = whole(4.4), plot_left = left + side + whole(5.4), plot_width = side * 3 / 2;
    const auto title = host::text_lines(shown.title, 1.1 * letters, plot_left + plot_width - left);
    const double next_line = 1.5 * letters;
    const int top = whole(2.4 + 1.5 * static_cast<double>(std::max<std::size_t>(title.size(), 1) - 1));
    host::drawing on{plot_left + plot_width + whole(1.2), top + side + whole(6.2)};
    on.fill({0, 0, static_cast<double>(on.width()), static_cast<double>(on.height())}, host::white_paper);
    for (std::size_t i = 0; i < title.size(); ++i)
        on.text({left + 0.0, top - 0.8 * letters - next_line * static_cast<double>(title.size() - 1 - i)},
                1.1 * letters, host::alignment::left, title[i], host::black_ink);

    bool is_undersampled = false;
    on.paste(zoomed(paint_square(shown, is_undersampled), side), left, top);
    const auto unit = host::frequency_unit_for(shown.limit);
    const double edge = shown.limit * unit.per_nm;
    const box square{left + 0.0, top + 0.0, left + side + 0.0, top + side + 0.0};
    host::plot{on, square, {-edge, edge}, {-edge, edge}, letters}.axes(
        "spatial frequency (" + std::string{unit.name} + ")", "");
    host::plot_contrast(on, {plot_left + 0.0, top + 0.0, plot_left + plot_width + 0.0, top + side + 0.0}, shown.profile,
                        shown.limit, letters);

    const double key = top + side + 5.2 * letters;
    key_row under_square{on, {left + 0.0, key}, letters};
    under_square.add_area({0, 0, 0}, "−1");
    under_square.add_area({255, 255, 255}, "1");
    if (is_undersampled) under_square.add_area(host::undersampled_ink, "undersampled");
    key_row under_plot{on, {plot_left + 0.0, key}, letters};
    const lens::contrast_profile& profile = shown.profile;
    if (!profile.zeros.empty())
        under_plot.add_dot(host::curve_ink, "zeros, first " + with_spacing(profile.zeros.front()));
    if (profile.envelope.back() < 0.999) under_plot.add_line(host::envelope_ink, true, "envelope");
    if (profile.information_limit > 0)
        under_plot.add_line(host::limit_ink, true, "information limit " + with_spacing(profile.information_limit));
    return host::picture_of(on);
}

}  // namespace zentrix::program
