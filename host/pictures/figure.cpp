#include "host/pictures/figure.h"

#include <algorithm>
#include <cmath>

#include "host/objects/value.h"
#include "host/pictures/font.h"
#include "host/pictures/legend.h"
#include "host/pictures/overlay.h"
#include "host/pictures/scale_bar.h"

namespace zentrix::host {

namespace {

constexpr std::int64_t largest_side = 65535;
constexpr double least_legend = 11;        // height of a legend, in letters
constexpr int least_annotated_side = 512;  // so that letters are legible
// A sixteenth of each side. The edges of a wave are often outliers: where a hologram is cut off, or where the shifted
// parts of a corrected wave come back at the other side.
constexpr double edges_of_waves = 1.0 / 16;

bool is_annotated(const figure_style& style) { return style.scale_bar || style.colour_bar || !style.title.empty(); }

int enlargement_for(const image& pixels, const figure_style& style)
{
    const std::int64_t longest = std::max(pixels.size(0), pixels.size(1));
    const std::int64_t wanted = style.enlargement > 0 ? style.enlargement
                                : is_annotated(style) ? std::max<std::int64_t>(1, least_annotated_side / longest)
                                                      : 1;
    if (wanted > 1 && longest * wanted > largest_side)
        throw script_error{"enlarged " + std::to_string(wanted) + " times, the picture would have more than " +
                           std::to_string(largest_side) + " pixels along a side"};
    return static_cast<int>(wanted);
}

std::string quantity_of(const image& pixels, const figure_style& style)
{
    if (!style.quantity.empty()) return style.quantity;
    const bool is_complex = pixels.type().meaning == element_class::complex;
    switch (style.shown) {
        case display_mode::real: return is_complex ? "real part" : "value";
        case display_mode::imaginary: return "imaginary part";
        case display_mode::modulus: return "modulus";
        case display_mode::log_modulus: return "ln modulus";
        case display_mode::phase: return "phase (rad)";
    }
    return "";
}

bar_length scale_bar_for(const image& pixels) { return round_bar(pixels.scale().axes[0], 0.3 * pixels.size(0)); }

}  // namespace

void require_drawable(const image& pixels, const figure_style& style)
{
    if (pixels.size(2) > 1) throw script_error{"a volume cannot be shown as one picture"};
    enlargement_for(pixels, style);
    if (style.scale_bar && scale_bar_for(pixels).pixels == 0)
        throw script_error{"a scale bar needs the pixel size, which the image does not have"};
}

figure::figure(const image& pixels, const figure_style& style)
{
    require_drawable(pixels, style);
    enlargement_ = enlargement_for(pixels, style);
    choose_limits(pixels, style);
    const bool marks = is_annotated(style) || range_.not_a_number > 0;
    painter_.emplace(pixels, range_.shown, range_.shades, range_.limits,
                     marks ? missing_pixels::marked : missing_pixels::black);
    channels_ = painter_->channels();
    values_.resize(painter_->values_per_row());
    image_row_.resize(pixels.size(0) * static_cast<std::size_t>(channels_));
    width_ = painter_->width() * enlargement_;
    height_ = painter_->height() * enlargement_;
    letters_ = std::max(13.0, std::sqrt(static_cast<double>(width_) * height_) / 24);
    if (style.scale_bar) add_scale_bar(pixels);
    if (style.colour_bar || !style.title.empty()) add_margins(style);
}

void figure::choose_limits(const image& pixels, const figure_style& style)
{
    const bool is_wave = style.shades == palette::wave;
    range_.shown = is_wave ? display_mode::phase : style.shown;
    range_.shades = style.shades;
    range_.quantity = quantity_of(pixels, style);
    const display_mode limited = is_wave ? display_mode::modulus : style.shown;
    if (style.shades == palette::cyclic || style.rule == limits_rule::given) {
        range_.limits = style.limits;
        range_.not_a_number = count_not_a_number(pixels, limited);
    } else if (is_wave && style.rule == limits_rule::automatic) {
        range_.limits = survey_of(pixels, limited, edges_of_waves).quantiles;
        range_.not_a_number = count_not_a_number(pixels, limited);
        if (range_.limits.white == 0) range_.limits = survey_of(pixels, limited).quantiles;  // nothing but edges
    } else {
        const value_survey survey = survey_of(pixels, limited);
        range_.not_a_number = survey.not_a_number;
        range_.limits = style.rule == limits_rule::full ? survey.extremes : automatic_limits(survey.quantiles, limited);
    }
    if (is_wave) range_.limits.black = 0;
}

void figure::add_scale_bar(const image& pixels)
{
    const drawing drawn = drawing_of_bar(scale_bar_for(pixels), enlargement_, letters_, {width_, height_});
    const double margin = std::round(0.7 * letters_) - std::ceil(std::max(1.0, letters_ / 10)) - 1;
    const int left = std::clamp(static_cast<int>(margin), 0, width_ - drawn.width());
    const int top = std::clamp(height_ - static_cast<int>(margin) - drawn.height(), 0, height_);
    layers_.push_back({left, top, drawn});
}

void figure::add_margins(const figure_style& style)
{
    const int margin = static_cast<int>(std::ceil(0.6 * letters_));
    const int image_width = width_, image_height = height_;
    left_ = margin;
    width_ += 2 * margin;
    std::optional<drawing> legend;
    if (style.colour_bar) {
        legend = legend_of(range_, std::max(image_height, static_cast<int>(least_legend * letters_)), letters_);
        height_ = legend->height();
        width_ += legend->width() - margin / 2;
    }
    const double size = 1.15 * letters_, next_line = 1.5 * letters_;
    const auto title = text_lines(style.title, size, width_ - 2 * margin);
    top_ = margin;
    if (!title.empty())
        top_ = static_cast<int>(std::ceil(2 * letters_ + next_line * static_cast<double>(title.size() - 1)));
    for (layer& above : layers_) above.left += left_, above.top += top_;
    height_ += top_ + margin;
    if (legend) layers_.push_back({left_ + image_width, top_, std::move(*legend)});
    if (title.empty()) return;
    drawing drawn{width_ - left_, top_};
    double base = top_ - 0.6 * letters_ - next_line * static_cast<double>(title.size() - 1);
    for (const std::string& line : title) {
        drawn.text({0, base}, size, alignment::left, line, black_ink);
        base += next_line;
    }
    layers_.push_back({left_, 0, std::move(drawn)});
}

void figure::paint_next_row(std::uint8_t* bytes)
{
    const int y = next_row_++, channels = channels_;
    if (left_ > 0)
        std::fill_n(bytes, static_cast<std::size_t>(width_) * static_cast<std::size_t>(channels), std::uint8_t{255});
    const int from_top = y - top_;
    std::uint8_t* to = bytes + static_cast<std::ptrdiff_t>(left_) * channels;
    if (from_top >= 0 && from_top < painter_->height() * enlargement_) {
        if (enlargement_ == 1)
            painter_->paint_row(from_top, values_, to);
        else {
            if (from_top % enlargement_ == 0) painter_->paint_row(from_top / enlargement_, values_, image_row_.data());
            for (auto from = image_row_.begin(); from != image_row_.end(); from += channels)
                for (int copy = 0; copy < enlargement_; ++copy) to = std::copy_n(from, channels, to);
        }
    }
    for (const layer& above : layers_)
        if (y >= above.top && y < above.top + above.drawn.height())
            above.drawn.paint_over(y - above.top, bytes + static_cast<std::ptrdiff_t>(above.left) * channels);
}

}  // namespace zentrix::host
