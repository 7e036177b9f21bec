#include "optics/unwrap/flood_fill.h"

#include "image/interruption.h"
#include "optics/unwrap/phase_wrap.h"

#include <algorithm>
#include <cstring>

namespace qorv::optics {

namespace {

/// Number of pixels whose flags are tested together.
constexpr std::int32_t run = 8;

constexpr std::uint64_t every_byte(std::uint64_t value) { return value * 0x0101010101010101u; }

std::uint64_t word_at(const std::uint8_t* flags) noexcept
{
    std::uint64_t word;
    std::memcpy(&word, flags, sizeof word);
    return word;
}

/// Whether one of eight bytes is zero; none may be above 127.
bool has_zero(std::uint64_t word) noexcept { return ((every_byte(0x80) - word) & every_byte(0x80)) != 0; }

enum class heading
{
    up,
    down
};

class filler
{
  public:
    filler(const float* phase, float* result, pixel_flags& flags, std::uint32_t* stack)
        : phase_{phase},
          result_{result},
          flags_{flags.data()},
          height_{flags.height()},
          pitch_{flags.pitch()},
          stack_{stack},
          top_{stack}
    {}

    /// `seed` = x * pitch + y, an open pixel.
    void fill_from(std::uint32_t seed)
    {
        go_to(seed);
        *q_ = *p_;
        *flag_ = pixel_flags::unwrapped;
        visit();
        while (top_ != stack_) {
            const std::uint32_t index = *--top_;
            if (++popped_ % 65536 == 0) dm::stop_if_interrupted();
            if (is_surrounded(flags_ + index)) continue;  // true of half the pixels of a smooth phase
            go_to(index);
            visit();
        }
    }

  private:
    /// Phase and result have no frame, so their columns are one pixel shorter than those of the flags.
    void go_to(std::uint32_t index)
    {
        const std::uint32_t x = index / static_cast<std::uint32_t>(pitch_);
        flag_ = flags_ + index;
        p_ = phase_ + (index - x);
        q_ = result_ + (index - x);
    }

    bool is_surrounded(const std::uint8_t* flag) const { return flag[-pitch_] && flag[pitch_] && flag[-1] && flag[1]; }

    void move(std::ptrdiff_t rows)
    {
        flag_ += rows;
        p_ += rows;
        q_ += rows;
    }

    void push(const std::uint8_t* flag) { *top_++ = static_cast<std::uint32_t>(flag - flags_); }

    // A step to the left or up adds a difference, one to the right or down subtracts the opposite difference. Only the
    // sign of a zero depends on it.
    void step_back(std::ptrdiff_t data, std::ptrdiff_t flag) { reach(data, flag, *q_ + wrap(p_[data] - *p_)); }
    void step_on(std::ptrdiff_t data, std::ptrdiff_t flag) { reach(data, flag, *q_ - wrap(*p_ - p_[data])); }

    void reach(std::ptrdiff_t data, std::ptrdiff_t flag, double value)
    {
        q_[data] = static_cast<float>(value);
        flag_[flag] = pixel_flags::unwrapped;
    }

    void reach_sides()
    {
        if (flag_[-pitch_] == 0) step_back(-height_, -pitch_), push(flag_ - pitch_);
        if (flag_[pitch_] == 0) step_on(height_, pitch_), push(flag_ + pitch_);
    }

    /// Visits the current pixel. As long as the pixel reached last is the one below or above, it is visited next
    /// without going through the stack.
    void visit()
    {
        reach_sides();
        const bool up = flag_[-1] == 0;
        if (up) step_back(-1, -1);
        if (flag_[1] == 0) {
            if (up) push(flag_ - 1);
            step_on(1, 1);
            follow<heading::down>();
        } else if (up)
            follow<heading::up>();
    }

    /// Goes on from the pixel just reached; the pixel before it has its value.
    template <heading way>
    void follow()
    {
        constexpr int ahead = way == heading::down ? 1 : -1;
        for (;;) {
            move(ahead);
            while (can_run<way>()) run_ahead<way>();
            reach_sides();
            if (flag_[ahead] != 0) return;
            if (way == heading::down)
                step_on(1, 1);
            else
                step_back(-1, -1);
        }
    }

    /// Whether the next `run` pixels ahead and all pixels on the right are open, and none on the left is.
    template <heading way>
    bool can_run() const
    {
        const std::ptrdiff_t first = way == heading::down ? 0 : 1 - run;
        const std::ptrdiff_t next = way == heading::down ? 1 : -run;
        return word_at(flag_ + pitch_ + first) == 0 && word_at(flag_ + next) == 0 &&
               !has_zero(word_at(flag_ - pitch_ + first));
    }

    template <heading way>
    void run_ahead()
    {
        constexpr int ahead = way == heading::down ? 1 : -1;
        double forward[run], aside[run];
        for (int k = 0; k < run; ++k) {
            const float* p = p_ + ahead * k;
            forward[k] = way == heading::down ? -wrap(p[0] - p[1]) : wrap(p[-1] - p[0]);
            aside[k] = wrap(p[0] - p[height_]);
        }
        float q[run + 1] = {*q_};
        for (int k = 0; k < run; ++k) q[k + 1] = static_cast<float>(q[k] + forward[k]);
        for (int k = 0; k < run; ++k) {
            q_[ahead * k + height_] = static_cast<float>(q[k] - aside[k]);
            q_[ahead * (k + 1)] = q[k + 1];
            top_[k] = static_cast<std::uint32_t>(flag_ + pitch_ + ahead * k - flags_);
        }
        top_ += run;
        std::memset(flag_ + (way == heading::down ? 1 : -run), pixel_flags::unwrapped, run);
        std::memset(flag_ + pitch_ + (way == heading::down ? 0 : 1 - run), pixel_flags::unwrapped, run);
        move(ahead * run);
    }

    const float* phase_;
    float* result_;
    std::uint8_t* flags_;
    std::ptrdiff_t height_, pitch_;
    std::uint32_t *stack_, *top_;
    std::uint32_t popped_ = 0;

    const float* p_ = nullptr;  ///< the current pixel in all three images
    float* q_ = nullptr;
    std::uint8_t* flag_ = nullptr;
};

/// Whether a pixel of rows y to y + 7 is open. In the last rows this includes the frame and what follows it, which may
/// only cost time.
bool any_open(const pixel_flags& flags, std::int32_t y)
{
    bool open = false;
    for (std::int32_t x = 0; x < flags.width(); ++x) open |= has_zero(word_at(flags.data() + flags.index(x, y)));
    return open;
}

}  // namespace

void fill_regions(const float* phase, float* result, pixel_flags& flags, std::uint32_t* stack)
{
    filler fill{phase, result, flags, stack};
    for (std::int32_t y = 0; y < flags.height(); ++y) {
        // Most rows are complete by then; eight of them are skipped at once.
        if (y % run == 0 && !any_open(flags, y)) {
            y += run - 1;
            continue;
        }
        for (std::int32_t x = 0; x < flags.width(); ++x)
            if (const auto i = flags.index(x, y); flags.data()[i] == 0) fill.fill_from(static_cast<std::uint32_t>(i));
    }
}

void fill_cuts(const float* phase, float* result, pixel_flags& flags)
{
    const std::ptrdiff_t height = flags.height(), pitch = flags.pitch();
    // Column by column is as good as row by row: the left and upper neighbours come first in both orders.
    for (std::int32_t x = 0; x < flags.width(); ++x) {
        std::uint8_t* flag = flags.data() + flags.index(x, 0);
        const float* p = phase + x * height;
        float* q = result + x * height;
        const auto settle = [&](std::ptrdiff_t y) {
            if (x > 0 && y > 0 && (flag[y - pitch] & pixel_flags::unwrapped))
                q[y] = static_cast<float>(q[y - height] + wrap(p[y] - p[y - height]));
            else if (x > 0 && y > 0 && (flag[y - 1] & pixel_flags::unwrapped))
                q[y] = static_cast<float>(q[y - 1] + wrap(p[y] - p[y - 1]));
            else {
                q[y] = p[y];
                return;
            }
            flag[y] |= pixel_flags::unwrapped;
        };
        for (std::int32_t y = 0; y < height; y += run) {
            if ((word_at(flag + y) & every_byte(pixel_flags::cut)) == 0) continue;
            for (std::ptrdiff_t k = y; k < std::min<std::ptrdiff_t>(y + run, height); ++k)
                if (flag[k] & pixel_flags::cut) settle(k);
        }
    }
}

}  // namespace qorv::optics
