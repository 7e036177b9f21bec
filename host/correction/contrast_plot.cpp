#include "host/correction/contrast_plot.h"

#include <algorithm>
#include <cmath>

#include "host/correction/undersampled.h"
#include "host/pictures/font.h"

namespace zentrix::host {

namespace {

/// The profile and its marks.
class profile_painter
{
  public:
    profile_painter(drawing& on, const box& area, const lens::contrast_profile& profile, double limit, double letters)
        : on_{on},
          profile_{profile},
          unit_{frequency_unit_for(limit)},
          letters_{letters},
          plot_{on, area, {0, limit * unit_.per_nm}, {-1.05, 1.05}, letters},
          line_{std::max(1.3, letters / 11)}
    {}

    void paint(const std::vector<double>& power)
    {
        const box& area = plot_.area();
        if (profile_.undersampled_from > 0)
            on_.fill({at(profile_.undersampled_from, 0).x, area.top, area.right, area.bottom}, undersampled_ink, 0.5);
        on_.line(std::vector<point>{{area.left, at(0, 0).y}, {area.right, at(0, 0).y}}, plot_.line_width(), grey_ink,
                 0.6);
        paint_power(power);
        paint_envelope();
        on_.line(curve(), line_, curve_ink);
        paint_information_limit();
        paint_zeros();
        plot_.axes("spatial frequency (" + std::string{unit_.name} + ")", is_damped() ? "sin χ × envelope" : "sin χ");
    }

  private:
    point at(double frequency, double value) const { return plot_.at(frequency * unit_.per_nm, value); }

    /// Up to where it can be drawn.
    std::vector<point> curve() const
    {
        std::vector<point> line;
        for (std::size_t i = 0; i < profile_.contrast.size(); ++i) {
            const double frequency = static_cast<double>(i) * profile_.step;
            if (profile_.undersampled_from > 0 && frequency > profile_.undersampled_from) break;
            line.push_back(at(frequency, profile_.contrast[i]));
        }
        return line;
    }

    bool is_damped() const { return profile_.envelope.back() < 0.999; }

    void paint_envelope()
    {
        if (!is_damped()) return;
        for (const double sign : {1.0, -1.0}) {
            std::vector<point> line;
            for (std::size_t i = 0; i < profile_.envelope.size(); ++i)
                line.push_back(at(static_cast<double>(i) * profile_.step, sign * profile_.envelope[i]));
            dashed(on_, line, 0.7 * line_, 0.45 * letters_, envelope_ink);
        }
    }

    void paint_power(const std::vector<double>& power)
    {
        std::vector<double> levels;
        for (const double mean : power)
            if (mean > 0) levels.push_back(std::log(mean));
        if (levels.size() < 3) return;
        std::ranges::sort(levels);
        // Single rings, such as that of the zero frequency, do not set the scale.
        const double low = levels[levels.size() / 50], high = levels[levels.size() - 1 - levels.size() / 50];
        if (!(high > low)) return;
        std::vector<point> line;
        for (std::size_t i = 0; i < power.size(); ++i)
            if (power[i] > 0)
                line.push_back({plot_.area().left + (plot_.area().right - plot_.area().left) * static_cast<double>(i) /
                                                        static_cast<double>(power.size() - 1),
                                at(0, std::clamp((std::log(power[i]) - low) / (high - low), 0.0, 1.0)).y});
        on_.line(line, 0.7 * line_, power_ink);
    }

    void paint_information_limit()
    {
        if (profile_.information_limit == 0) return;
        const point middle = at(profile_.information_limit, 0);
        std::vector<point> line;
        for (double y = plot_.area().top; y <= plot_.area().bottom; ++y) line.push_back({middle.x, y});
        dashed(on_, line, 0.7 * line_, 0.25 * letters_, limit_ink);
    }

    /// A circle for each zero, smaller where zeros are close to each other; a bar along those that are too close.
    void paint_zeros()
    {
        const double largest = 0.5 * letters_, smallest = 0.25 * letters_;
        std::vector<point> zeros, bar;
        for (const double zero : profile_.zeros) zeros.push_back(at(zero, 0));
        for (std::size_t i = 0; i < zeros.size(); ++i) {
            double distance = 2 * largest;  // to the nearest other zero
            if (i > 0) distance = std::min(distance, zeros[i].x - zeros[i - 1].x);
            if (i + 1 < zeros.size()) distance = std::min(distance, zeros[i + 1].x - zeros[i].x);
            const bool is_circle = distance - plot_.line_width() >= smallest;
            if (!is_circle) bar.push_back(zeros[i]);
            if (!bar.empty() && (is_circle || i + 1 == zeros.size())) {
                paint_mark(bar.front(), bar.back(), smallest);
                bar.clear();
            }
            if (is_circle) paint_mark(zeros[i], zeros[i], std::min(largest, distance - plot_.line_width()));
        }
    }

    void paint_mark(point from, point to, double width)
    {
        const std::vector<point> line{from, to};
        on_.line(line, width, curve_ink);
        on_.line(line, width - 2 * plot_.line_width(), white_paper);
    }

    drawing& on_;
    const lens::contrast_profile& profile_;
    frequency_unit unit_;
    double letters_;
    plot plot_;
    double line_;
};

}  // namespace

frequency_unit frequency_unit_for(double limit)
{
    if (limit >= 0.1) return {1, "nm⁻¹", "nm"};
    return limit >= 1e-4 ? frequency_unit{1e3, "µm⁻¹", "µm"} : frequency_unit{1e6, "mm⁻¹", "mm"};
}

void dashed(drawing& on, const std::vector<point>& line, double width, double dash, rgb ink)
{
    std::vector<point> part;
    double drawn = 0;
    bool is_gap = false;
    for (const point& p : line) {
        if (!part.empty()) drawn += std::hypot(p.x - part.back().x, p.y - part.back().y);
        part.push_back(p);
        if (drawn < dash) continue;
        if (!is_gap) on.line(part, width, ink);
        is_gap = !is_gap;
        drawn = 0;
        part = {p};
    }
    if (!is_gap) on.line(part, width, ink);
}

void plot_contrast(drawing& on, const box& area, const lens::contrast_profile& profile, double limit, double letters,
                   const std::vector<double>& power)
{
    profile_painter{on, area, profile, limit, letters}.paint(power);
}

picture picture_of_contrast(int width, int height, const lens::contrast_profile& profile, double limit, double letters,
                            const std::vector<double>& power)
{
    drawing on{width, height};
    on.fill({0, 0, width + 0.0, height + 0.0}, white_paper);
    const box area{std::ceil(4.2 * letters), std::ceil(1.8 * letters), width - std::ceil(1.2 * letters),
                   height - std::ceil(3.8 * letters)};
    if (area.right < area.left + 4 * letters || area.bottom < area.top + 3 * letters) return picture_of(on);
    plot_contrast(on, area, profile, limit, letters, power);
    double left = area.left;
    const auto name = [&](rgb ink, const std::string& text) {
        const double middle = letters * 0.8;
        on.line(std::vector<point>{{left, middle}, {left + letters, middle}}, std::max(1.5, letters / 8), ink);
        on.text({left + 1.3 * letters, middle + capital_height(letters) / 2}, letters, alignment::left, text,
                black_ink);
        left += 2.2 * letters + text_width(text, letters);
    };
    name(curve_ink, "transfer");
    if (profile.envelope.back() < 0.999) name(envelope_ink, "envelope");
    if (!power.empty()) name(power_ink, "power (log)");
    return picture_of(on);
}

}  // namespace zentrix::host
