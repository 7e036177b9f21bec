#include "optics/unwrap/residues.h"

#include "optics/unwrap/phase_wrap.h"

#include <algorithm>
#include <cmath>

namespace qorv::optics {

namespace {

/// Phases up to this [rad] round the four differences of a loop by less than 0.001 rad in total. A loop is then a
/// residue exactly when the turns of its four differences, which are whole numbers, do not cancel.
constexpr float small_phase = 1000;

bool all_small(const float* row, std::ptrdiff_t count)
{
    int others = 0;
    for (std::ptrdiff_t x = 0; x < count; ++x) others |= !(std::fabs(row[x]) <= small_phase);
    return others == 0;
}

/// to[x] = the whole turns that wrapping adds to b[x] - a[x].
void turns_between(const float* a, const float* b, std::int8_t* to, std::ptrdiff_t count)
{
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const float d = b[x] - a[x];
        to[x] = static_cast<std::int8_t>((d <= -half_turn) - (d >= half_turn));
    }
}

/// The turns along one row of pixels, and whether all its phases are small enough to rely on turns alone.
struct row_turns
{
    explicit row_turns(std::ptrdiff_t width) : turns(width) {}
    void read(const float* row, std::ptrdiff_t width)
    {
        small = all_small(row, width);
        turns_between(row, row + 1, turns.data(), width - 1);
    }
    std::vector<std::int8_t> turns;
    bool small = false;
};

/// Signs of the loops between two rows, from the sums themselves.
void sign_loops(const float* above, const float* below, std::int8_t* signs, std::ptrdiff_t loops)
{
    for (std::ptrdiff_t x = 0; x < loops; ++x) {
        const double right = wrap(above[x + 1] - above[x]);
        const double down = wrap(below[x + 1] - above[x + 1]);
        const double left = wrap(below[x] - below[x + 1]);
        const double up = wrap(above[x] - below[x]);
        const double sum = down + right + left + up;
        signs[x] = static_cast<std::int8_t>((sum > least_residue) - (sum < -least_residue));
    }
}

/// Eight bytes of 0 or 1 as eight bits.
std::uint8_t packed(std::uint64_t flags) { return static_cast<std::uint8_t>(flags * 0x0102040810204080u >> 56); }

constexpr std::uint64_t every_byte(std::uint64_t value) { return value * 0x0101010101010101u; }

/// 1 in each byte that is not zero; bytes are -4 to 4.
std::uint64_t non_zero(std::uint64_t bytes) { return (bytes | bytes >> 1 | bytes >> 2) & every_byte(1); }

void store(const std::int8_t* signs, std::int32_t loops, std::int32_t y, residue_map& map)
{
    for (std::int32_t x = 0; x < loops; x += 8)  // signs after the last loop are zero
    {
        std::uint64_t bytes;
        std::memcpy(&bytes, signs + x, sizeof bytes);
        if (bytes == 0) continue;
        const std::uint64_t negative = bytes >> 7 & every_byte(1);
        const std::uint8_t found = packed(non_zero(bytes));
        map.rows.row(y)[x / 8] = found;
        map.positive.row(y)[x / 8] = static_cast<std::uint8_t>(found & ~packed(negative));
        map.count += static_cast<std::size_t>(std::popcount(found));
        for (unsigned left = found; left != 0; left &= left - 1) map.columns.set(y, x + std::countr_zero(left));
    }
}

}  // namespace

residue_map find_residues(const float* phase, std::int32_t width, std::int32_t height)
{
    residue_map map{{width, height}, {height, width}, {width, height}};
    if (width < 2 || height < 2) return map;
    row_turns above(width), below(width);
    std::vector<std::int8_t> down(width), signs(width + 8);
    below.read(phase, width);
    for (std::int32_t y = 0; y + 1 < height; ++y) {
        const float* row = phase + std::ptrdiff_t{y} * width;
        const float* next = row + width;
        std::swap(above, below);
        below.read(next, width);
        if (above.small && below.small) {
            turns_between(row, next, down.data(), width);
            const std::int8_t *v = down.data(), *h0 = above.turns.data(), *h1 = below.turns.data();
            for (std::ptrdiff_t x = 0; x + 1 < width; ++x)
                signs[x] = static_cast<std::int8_t>(v[x + 1] + h0[x] - h1[x] - v[x]);
        } else
            sign_loops(row, next, signs.data(), width - 1);
        store(signs.data(), width - 1, y, map);
    }
    return map;
}

}  // namespace qorv::optics
