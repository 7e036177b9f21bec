#pragma once

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

/// Goldstein unwrapping step by step, without any shortcut: the reference to which the product's result is equal bit
/// for bit. Slow where a box search is long.
namespace support {

class goldstein_literal
{
  public:
    enum flag : std::uint32_t
    {
        positive = 1,
        negative = 2,
        branch_cut = 4,
        border = 8,
        growing = 16,
        unwrapped = 32,
        balanced = 128,
    };

    goldstein_literal(const std::vector<float>& phase, int width, int height, int box_limit)
        : w{width}, h{height}, limit{box_limit}, p{phase}, q{phase}, flags(phase.size())
    {
        if (limit == 0) limit = static_cast<int>((static_cast<unsigned>(w) + static_cast<unsigned>(h)) >> 1);
        find_residues();
        place_cuts();
        fill();
        fill_cut_pixels();
    }

    const std::vector<float>& result() const { return q; }
    std::uint32_t flags_at(int x, int y) const { return flags[x + y * w]; }

  private:
    using point = std::pair<int, int>;

    static double wrap(float difference)
    {
        const double d = difference;
        if (d < -3.141592653589793) return d + 6.283185307179586;
        if (d > 3.141592653589793) return d - 6.283185307179586;
        return d;
    }
    float phase(int x, int y) const { return p[x + y * w]; }
    float& value(int x, int y) { return q[x + y * w]; }
    std::uint32_t& at(int x, int y) { return flags[x + y * w]; }

    void find_residues()
    {
        for (int y = 0; y <= h - 2; ++y)
            for (int x = 0; x <= w - 2; ++x) {
                const double d1 = wrap(phase(x + 1, y) - phase(x, y));
                const double d2 = wrap(phase(x + 1, y + 1) - phase(x + 1, y));
                const double d3 = wrap(phase(x, y + 1) - phase(x + 1, y + 1));
                const double d4 = wrap(phase(x, y) - phase(x, y + 1));
                const double s = d2 + d1 + d3 + d4;
                if (s > 0.01)
                    at(x, y) |= positive;
                else if (s < -0.01)
                    at(x, y) |= negative;
            }
    }

    void place_cuts()
    {
        for (int y = 0; y <= h - 2; ++y)
            for (int x = 0; x <= w - 2; ++x)
                if ((at(x, y) & (positive | negative)) && !(at(x, y) & balanced)) grow_tree(x, y);
    }

    void grow_tree(int x, int y)
    {
        at(x, y) |= balanced | growing;
        list.assign(1, {x, y});
        charge = at(x, y) & positive ? 1 : -1;
        if (!search()) edge_cut(x, y);
        for (const auto& [i, j] : list) at(i, j) &= ~growing;
    }

    bool search()
    {
        for (int n = 3; n <= limit; n += 2)
            for (std::size_t k = 0; k < list.size(); ++k) {
                const auto [cx, cy] = list[k];
                const int r = n / 2;
                for (int j = cy - r; j <= cy + r; ++j)
                    for (int i = cx - r; i <= cx + r; ++i) {
                        if (i < 0 || i >= w || j < 0 || j >= h) continue;
                        if (finishes(i, j, cx, cy)) return true;
                    }
            }
        return false;
    }

    bool finishes(int i, int j, int cx, int cy)
    {
        if (i == 0 || i == w - 1 || j == 0 || j == h - 1 || (at(i, j) & border)) {
            edge_cut(cx, cy);
            return true;
        }
        if ((at(i, j) & (positive | negative)) && !(at(i, j) & growing)) {
            if (!(at(i, j) & balanced)) {
                charge += at(i, j) & positive ? 1 : -1;
                at(i, j) |= balanced;
            }
            at(i, j) |= growing;
            list.push_back({i, j});
            place_cut(i, j, cx, cy);
        }
        return charge == 0;
    }

    void edge_cut(int cx, int cy)
    {
        const int bx = cx < (w >> 1) ? 0 : w - 1;
        const int by = cy < (h >> 1) ? 0 : h - 1;
        if (std::abs(cx - bx) >= std::abs(cy - by))
            place_cut(cx, by, cx, cy);
        else
            place_cut(bx, cy, cx, cy);
    }

    void place_cut(int ax, int ay, int bx, int by)
    {
        const auto approach = [](int& a, int& b) {
            if (1 <= a && a < b)
                ++a;
            else if (1 <= b && b < a)
                ++b;
        };
        approach(ax, bx);
        approach(ay, by);
        draw(ax, ay, bx, by);
    }

    void draw(int x1, int y1, int x2, int y2)
    {
        const int dx = std::abs(x2 - x1), dy = std::abs(y2 - y1);
        const int sx = x2 < x1 ? -1 : 1, sy = y2 < y1 ? -1 : 1;
        const bool flat = dx >= dy;
        const int steps = flat ? dx : dy, rise = flat ? dy : dx;
        int x = x1, y = y1, e = steps - (flat ? y2 < y1 : x2 < x1);
        for (int k = 0; k < steps; ++k, (flat ? x += sx : y += sy)) {
            if (e >= 2 * steps) e -= 2 * steps, (flat ? y += sy : x += sx);
            e += 2 * rise;
            at(x, y) |= branch_cut;
        }
        at(x2, y2) |= branch_cut;
    }

    bool is_open(int x, int y)
    {
        return x >= 0 && x < w && y >= 0 && y < h && !(at(x, y) & (branch_cut | border | unwrapped));
    }

    void fill()
    {
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                if (!is_open(x, y)) continue;
                visit(x, y);
                while (!stack.empty()) {
                    const auto [i, j] = stack.back();
                    stack.pop_back();
                    visit(i, j);
                }
            }
    }

    void visit(int x, int y)
    {
        at(x, y) |= unwrapped;
        const float here = phase(x, y);
        const double from = value(x, y);
        const auto reach = [&](int i, int j, double sum) {
            value(i, j) = static_cast<float>(sum);
            stack.push_back({i, j});
            at(i, j) |= unwrapped;
        };
        if (is_open(x - 1, y)) reach(x - 1, y, from + wrap(phase(x - 1, y) - here));
        if (is_open(x + 1, y)) reach(x + 1, y, from - wrap(here - phase(x + 1, y)));
        if (is_open(x, y - 1)) reach(x, y - 1, from + wrap(phase(x, y - 1) - here));
        if (is_open(x, y + 1)) reach(x, y + 1, from - wrap(here - phase(x, y + 1)));
    }

    void fill_cut_pixels()
    {
        for (int y = 1; y < h; ++y)
            for (int x = 1; x < w; ++x) {
                if (!(at(x, y) & branch_cut)) continue;
                for (const auto& [i, j] : {point{x - 1, y}, point{x, y - 1}}) {
                    if (!(at(i, j) & unwrapped)) continue;
                    value(x, y) = static_cast<float>(value(i, j) + wrap(phase(x, y) - phase(i, j)));
                    at(x, y) |= unwrapped;
                    break;
                }
            }
    }

    int w, h, limit;
    std::vector<float> p, q;
    std::vector<std::uint32_t> flags;
    std::vector<point> list, stack;
    int charge = 0;
};

}  // namespace support
