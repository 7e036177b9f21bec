#include "optics/unwrap/goldstein.h"

#include "image/errors.h"
#include "image/interruption.h"
#include "optics/unwrap/phase_wrap.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <vector>

namespace qorv::optics {

namespace {

struct position
{
    std::int32_t x, y;
};

/// One correction, never more: a difference beyond 3 pi stays outside [-pi, pi].
double wrap_once(float difference) noexcept
{
    const double d = difference;
    if (d < -pi) return d + full_turn;
    if (d > pi) return d - full_turn;
    return d;
}

/// The four steps of the algorithm.
class plain_unwrapper
{
  public:
    plain_unwrapper(const float* phase, float* result, std::int32_t width, std::int32_t height, std::int32_t box_limit,
                    std::uint32_t* flags)
        : phase_{phase}, result_{result}, flags_{flags}, width_{width}, height_{height}, limit_{box_limit}
    {
        const auto sum = static_cast<std::uint32_t>(width) + static_cast<std::uint32_t>(height);
        if (limit_ == 0) limit_ = static_cast<std::int32_t>(sum >> 1);
    }

    void run()
    {
        const std::ptrdiff_t count = std::ptrdiff_t{width_} * height_;
        std::fill_n(flags_, count, 0u);
        tree_.reserve(find_residues());
        stack_.reserve(static_cast<std::size_t>(count));  // a pixel is pushed once at most
        place_cuts();
        std::copy_n(phase_, count, result_);
        fill_regions();
        fill_cuts();
    }

  private:
    static constexpr std::uint32_t residue = goldstein_flag::positive_residue | goldstein_flag::negative_residue;

    std::ptrdiff_t index(std::int32_t x, std::int32_t y) const { return std::ptrdiff_t{y} * width_ + x; }
    float phase(std::int32_t x, std::int32_t y) const { return phase_[index(x, y)]; }
    float& value(std::int32_t x, std::int32_t y) { return result_[index(x, y)]; }
    std::uint32_t& flags(std::int32_t x, std::int32_t y) { return flags_[index(x, y)]; }

    // Step 1: residues.

    /// Marks the residues and returns their number.
    std::size_t find_residues()
    {
        std::size_t found = 0;
        for (std::int32_t y = 0; y + 1 < height_; ++y)
            for (std::int32_t x = 0; x + 1 < width_; ++x) {
                const double d1 = wrap_once(phase(x + 1, y) - phase(x, y));
                const double d2 = wrap_once(phase(x + 1, y + 1) - phase(x + 1, y));
                const double d3 = wrap_once(phase(x, y + 1) - phase(x + 1, y + 1));
                const double d4 = wrap_once(phase(x, y) - phase(x, y + 1));
                const double sum = d2 + d1 + d3 + d4;
                if (sum > least_residue)
                    flags(x, y) |= goldstein_flag::positive_residue;
                else if (sum < -least_residue)
                    flags(x, y) |= goldstein_flag::negative_residue;
                found += (flags(x, y) & residue) != 0;
            }
        return found;
    }

    // Step 2: branch cuts. A tree of residues grows until its charges cancel or it is cut to the edge.

    void place_cuts()
    {
        for (std::int32_t y = 0; y + 1 < height_; ++y) {
            dm::stop_if_interrupted();
            for (std::int32_t x = 0; x + 1 < width_; ++x)
                if ((flags(x, y) & residue) && !(flags(x, y) & goldstein_flag::balanced)) grow_tree({x, y});
        }
    }

    void grow_tree(position start)
    {
        tree_.clear();
        charge_ = 0;
        count(start);
        join(start);
        if (!search_boxes()) cut_to_edge(start);
        for (const position& member : tree_) flags(member.x, member.y) &= ~goldstein_flag::growing;
    }

    /// Searches boxes of 3, 5, 7, ... pixels around every member of the tree, which grows meanwhile. Returns whether
    /// the tree was finished, which it is at the latest by the box that reaches the edge of the image.
    bool search_boxes()
    {
        for (std::int32_t side = 3; side <= limit_; side += 2)
            for (std::size_t k = 0; k < tree_.size(); ++k) {
                // Most trees end within a few small boxes, which take less time than a reading of the clock.
                if (side % 64 == 1 || k % 1024 == 1023) dm::stop_if_interrupted();
                if (search_box(tree_[k], side / 2)) return true;
            }
        return false;
    }

    bool search_box(position centre, std::int32_t radius)
    {
        for (std::int32_t y = std::max(centre.y - radius, 0); y <= std::min(centre.y + radius, height_ - 1); ++y)
            for (std::int32_t x = std::max(centre.x - radius, 0); x <= std::min(centre.x + radius, width_ - 1); ++x) {
                if (x == 0 || x == width_ - 1 || y == 0 || y == height_ - 1) {
                    cut_to_edge(centre);
                    return true;
                }
                if ((flags(x, y) & residue) && !(flags(x, y) & goldstein_flag::growing)) {
                    if (!(flags(x, y) & goldstein_flag::balanced)) count({x, y});
                    join({x, y});
                    place_cut({x, y}, centre);
                }
                if (charge_ == 0) return true;
            }
        return false;
    }

    void count(position at)
    {
        charge_ += flags(at.x, at.y) & goldstein_flag::positive_residue ? 1 : -1;
        flags(at.x, at.y) |= goldstein_flag::balanced;
    }

    void join(position at)
    {
        flags(at.x, at.y) |= goldstein_flag::growing;
        tree_.push_back(at);
    }

    /// Straight to the edge of the image's half in which the residue lies: up or down when the side is at least as far
    /// away as the top or bottom, sideways otherwise.
    void cut_to_edge(position from)
    {
        const std::int32_t side = from.x < width_ / 2 ? 0 : width_ - 1;
        const std::int32_t level = from.y < height_ / 2 ? 0 : height_ - 1;
        const bool vertical = std::abs(from.x - side) >= std::abs(from.y - level);
        place_cut(vertical ? position{from.x, level} : position{side, from.y}, from);
    }

    /// Residues are at pixel corners: along each axis the end nearer to the origin moves up by one, unless it is on the
    /// edge.
    static void move_nearer_end(std::int32_t& a, std::int32_t& b)
    {
        if (1 <= a && a < b)
            ++a;
        else if (1 <= b && b < a)
            ++b;
    }

    void place_cut(position from, position to)
    {
        move_nearer_end(from.x, to.x);
        move_nearer_end(from.y, to.y);
        draw_line(from, to);
    }

    void draw_line(position from, position to)
    {
        const std::ptrdiff_t dx = std::abs(to.x - from.x), dy = std::abs(to.y - from.y);
        const bool flat = dx >= dy;
        const std::ptrdiff_t steps = flat ? dx : dy, rise = flat ? dy : dx;
        const bool falls = flat ? to.y < from.y : to.x < from.x;
        std::ptrdiff_t error = steps - (falls ? 1 : 0);
        const auto step_x = [&] { from.x += to.x < from.x ? -1 : 1; };
        const auto step_y = [&] { from.y += to.y < from.y ? -1 : 1; };
        for (std::ptrdiff_t k = 0; k < steps; ++k) {
            if (error >= 2 * steps) {
                error -= 2 * steps;
                flat ? step_y() : step_x();
            }
            error += 2 * rise;
            flags(from.x, from.y) |= goldstein_flag::branch_cut;
            flat ? step_x() : step_y();
        }
        flags(to.x, to.y) |= goldstein_flag::branch_cut;
    }

    // Step 3: flood fill. A region starts at its first pixel in row order. The fill is depth-first: it continues from
    // the pixel reached last.

    void fill_regions()
    {
        std::uint32_t popped = 0;
        for (std::int32_t y = 0; y < height_; ++y)
            for (std::int32_t x = 0; x < width_; ++x) {
                if (!is_open(x, y)) continue;
                visit({x, y});
                while (!stack_.empty()) {
                    const position next = stack_.back();
                    stack_.pop_back();
                    if (++popped % 65536 == 0) dm::stop_if_interrupted();
                    visit(next);
                }
            }
    }

    bool is_open(std::int32_t x, std::int32_t y)
    {
        return x >= 0 && x < width_ && y >= 0 && y < height_ &&
               !(flags(x, y) & (goldstein_flag::branch_cut | goldstein_flag::unwrapped));
    }

    /// Gives the open neighbours their values. A difference to the right or down is subtracted in the other direction,
    /// which decides the sign of a zero.
    void visit(position at)
    {
        const auto [x, y] = at;
        flags(x, y) |= goldstein_flag::unwrapped;
        const float here = phase(x, y);
        const double from = value(x, y);
        if (is_open(x - 1, y)) reach({x - 1, y}, from + wrap_once(phase(x - 1, y) - here));
        if (is_open(x + 1, y)) reach({x + 1, y}, from - wrap_once(here - phase(x + 1, y)));
        if (is_open(x, y - 1)) reach({x, y - 1}, from + wrap_once(phase(x, y - 1) - here));
        if (is_open(x, y + 1)) reach({x, y + 1}, from - wrap_once(here - phase(x, y + 1)));
    }

    void reach(position at, double sum)
    {
        value(at.x, at.y) = static_cast<float>(sum);
        stack_.push_back(at);
        flags(at.x, at.y) |= goldstein_flag::unwrapped;
    }

    // Step 4: pixels on cuts, from the left or else the upper neighbour, in one pass.

    void fill_cuts()
    {
        for (std::int32_t y = 1; y < height_; ++y)
            for (std::int32_t x = 1; x < width_; ++x)
                if (flags(x, y) & goldstein_flag::branch_cut) fill_cut_pixel(x, y);
    }

    void fill_cut_pixel(std::int32_t x, std::int32_t y)
    {
        for (const auto& [i, j] : {position{x - 1, y}, position{x, y - 1}}) {
            if (!(flags(i, j) & goldstein_flag::unwrapped)) continue;
            value(x, y) = static_cast<float>(value(i, j) + wrap_once(phase(x, y) - phase(i, j)));
            flags(x, y) |= goldstein_flag::unwrapped;
            return;
        }
    }

    const float* phase_;
    float* result_;
    std::uint32_t* flags_;
    std::int32_t width_, height_, limit_;
    std::vector<position> tree_, stack_;
    std::ptrdiff_t charge_ = 0;
};

}  // namespace

void unwrap_goldstein_plain(const float* phase, float* result, std::int32_t width, std::int32_t height,
                            std::int32_t box_limit, void* scratch)
{
    plain_unwrapper{phase, result, width, height, box_limit, static_cast<std::uint32_t*>(scratch)}.run();
}

dm::variants<goldstein_kernel> goldstein_variants()
{
    static constexpr dm::variant<goldstein_kernel> table[] = {{"fast", dm::cpu::sse2, unwrap_goldstein_fast},
                                                              {"plain", dm::cpu::none, unwrap_goldstein_plain}};
    return table;
}

void unwrap_goldstein(const float* phase, float* result, std::int32_t width, std::int32_t height,
                      std::int32_t box_limit, void* scratch)
{
    dm::require(phase && result && scratch && width >= 1 && height >= 1, dm::errors::parameters_invalid);
    const std::uint64_t indices = (std::uint64_t(width) + 2) * (std::uint64_t(height) + 1);
    if (indices > std::numeric_limits<std::uint32_t>::max()) throw std::length_error{too_long};
    dm::choose(goldstein_variants()).function(phase, result, width, height, box_limit, scratch);
}

}  // namespace qorv::optics
