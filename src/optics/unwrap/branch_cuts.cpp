#include "optics/unwrap/branch_cuts.h"

#include "image/interruption.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace qorv::optics {

namespace {

struct position
{
    std::int32_t x, y;
};

/// Residues are at pixel corners: along each axis the end nearer to the origin moves up by one, unless it is on the
/// edge.
void move_nearer_end(std::int32_t& a, std::int32_t& b)
{
    const bool a_is_nearer = (1 <= a) & (a < b),
               b_is_nearer = (1 <= b) & (b < a);  // branch-free: both orders are frequent
    a += a_is_nearer;
    b += b_is_nearer;
}

/// Marks a digital straight line without its last pixel. `major` and `minor` are its lengths along the longer and the
/// shorter axis, `major_step` and `minor_step` the index steps.
void mark_line(std::uint8_t* flag, std::ptrdiff_t major, std::ptrdiff_t minor, std::ptrdiff_t major_step,
               std::ptrdiff_t minor_step, bool minor_falls)
{
    std::ptrdiff_t error = major - (minor_falls ? 1 : 0);
    for (std::ptrdiff_t left = major; left > 0; --left) {
        if (error >= 2 * major) {
            error -= 2 * major;
            flag += minor_step;
        }
        error += 2 * minor;
        *flag |= pixel_flags::cut;
        flag += major_step;
    }
}

void place_cut(pixel_flags& flags, position from, position to)
{
    move_nearer_end(from.x, to.x);
    move_nearer_end(from.y, to.y);
    const std::ptrdiff_t dx = std::abs(to.x - from.x), dy = std::abs(to.y - from.y);
    const bool x_falls = to.x < from.x, y_falls = to.y < from.y;
    const std::ptrdiff_t x_step = x_falls ? -flags.pitch() : flags.pitch();
    const std::ptrdiff_t y_step = y_falls ? -1 : 1;
    std::uint8_t* start = flags.data() + flags.index(from.x, from.y);
    if (dx >= dy)
        mark_line(start, dx, dy, x_step, y_step, y_falls);
    else
        mark_line(start, dy, dx, y_step, x_step, x_falls);
    flags.data()[flags.index(to.x, to.y)] |= pixel_flags::cut;
}

/// Grows the trees one after another.
class cut_grower
{
  public:
    cut_grower(residue_map& residues, std::int32_t limit, pixel_flags& flags)
        : open_{residues},
          uncounted_{residues.rows},
          limit_{limit},
          flags_{flags},
          width_{flags.width()},
          height_{flags.height()}
    {
        members_.reserve(residues.count);
    }

    void grow_all()
    {
        for (std::int32_t y = 0; y + 1 < height_; ++y) {
            dm::stop_if_interrupted();
            for (std::int32_t x = 0; x + 1 < width_;) {
                const std::uint64_t found = uncounted_.stretch(x, y, width_ - 2);
                if (found == 0) {
                    x += bit_plane::chunk;
                    continue;
                }
                x += std::countr_zero(found);
                grow({x, y});  // may count further residues of this row, so the bits are read again
                ++x;
            }
        }
    }

  private:
    void grow(position start)
    {
        members_.clear();
        charge_ = 0;
        count(start);
        join(start);
        if (!search_boxes()) cut_to_edge(start);
        for (const position& member : members_) {
            open_.rows.set(member.x, member.y);
            open_.columns.set(member.y, member.x);
        }
    }

    /// Returns whether the tree was finished: neutral or cut to the edge.
    bool search_boxes()
    {
        std::size_t walked = 0;  // members whose previous box was searched; only the ring around it is new
        for (std::int32_t side = 3; side <= limit_; side += 2) {
            for (std::size_t k = 0; k < members_.size(); ++k) {
                // Most trees end within a few small boxes, which take less time than a reading of the clock.
                if (k % 1024 == 1023) dm::stop_if_interrupted();
                if (search_box(members_[k], side / 2, k < walked)) return true;
            }
            walked = members_.size();
        }
        return false;
    }

    bool search_box(position centre, std::int32_t radius, bool ring_only)
    {
        const std::int32_t left = centre.x - radius, right = centre.x + radius;
        const std::int32_t top = centre.y - radius, bottom = centre.y + radius;
        if (left <= 0 || top <= 0) return cut_to_edge(centre);  // the first pixel of the box is on the edge
        const auto visit_row = [&](std::int32_t y, std::int32_t last) {
            return open_.rows.any_of(y, left, last, [&](std::int32_t x) { return found({x, y}, centre); });
        };
        if (right >= width_ - 1)  // the first row ends on the edge
            return visit_row(top, width_ - 2) || cut_to_edge(centre);
        const bool meets_bottom = bottom >= height_ - 1;
        if (ring_only) {
            if (visit_row(top, right) || visit_sides(left, right, top + 1, bottom - 1, centre)) return true;
            return meets_bottom ? cut_to_edge(centre) : visit_row(bottom, right);
        }
        for (std::int32_t y = top; y <= std::min(bottom, height_ - 2); ++y)
            if (visit_row(y, right)) return true;
        return meets_bottom && cut_to_edge(centre);
    }

    /// The leftmost and rightmost pixels of a box in rows `first` to `last`.
    bool visit_sides(std::int32_t left, std::int32_t right, std::int32_t first, std::int32_t last, position centre)
    {
        for (std::int32_t y = first; y <= last; y += bit_plane::chunk) {
            const std::uint64_t on_left = open_.columns.stretch(y, left, last);
            const std::uint64_t on_right = open_.columns.stretch(y, right, last);
            for (std::uint64_t both = on_left | on_right; both != 0; both &= both - 1) {
                const int k = std::countr_zero(both);
                if ((on_left >> k & 1) && found({left, y + k}, centre)) return true;
                if ((on_right >> k & 1) && found({right, y + k}, centre)) return true;
            }
        }
        return false;
    }

    /// A residue in a member's box becomes a member. Returns whether the tree is neutral then.
    bool found(position residue, position centre)
    {
        if (uncounted_.test(residue.x, residue.y)) count(residue);
        join(residue);
        place_cut(flags_, residue, centre);
        return charge_ == 0;
    }

    void count(position residue)
    {
        uncounted_.clear(residue.x, residue.y);
        charge_ += open_.positive.test(residue.x, residue.y) ? 1 : -1;
    }

    void join(position residue)
    {
        open_.rows.clear(residue.x, residue.y);
        open_.columns.clear(residue.y, residue.x);
        members_.push_back(residue);
    }

    /// Straight to the edge of the image's half in which the residue lies: up or down when the side is at least as far
    /// away as the top or bottom, sideways otherwise. Always returns true.
    bool cut_to_edge(position from)
    {
        const std::int32_t side = from.x < width_ / 2 ? 0 : width_ - 1;
        const std::int32_t level = from.y < height_ / 2 ? 0 : height_ - 1;
        const bool vertical = std::abs(from.x - side) >= std::abs(from.y - level);
        place_cut(flags_, vertical ? position{from.x, level} : position{side, from.y}, from);
        return true;
    }

    residue_map& open_;    ///< residues outside the growing tree
    bit_plane uncounted_;  ///< residues whose charge is not counted in any tree
    std::int32_t limit_;
    pixel_flags& flags_;
    std::int32_t width_, height_;
    std::vector<position> members_;
    std::ptrdiff_t charge_ = 0;
};

}  // namespace

void place_branch_cuts(residue_map& residues, std::int32_t box_limit, pixel_flags& flags)
{
    if (residues.count == 0) return;
    const auto sum = static_cast<std::uint32_t>(flags.width()) + static_cast<std::uint32_t>(flags.height());
    const std::int32_t limit = box_limit == 0 ? static_cast<std::int32_t>(sum >> 1) : box_limit;
    cut_grower{residues, limit, flags}.grow_all();
}

}  // namespace qorv::optics
