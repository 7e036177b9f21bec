#include "optics/flood_fill.h"

#include "optics/phase_wrap.h"

#include <bit>

namespace qorv::optics {

namespace {

class filler
{
  public:
    filler(const float* phase, float* result, pixel_flags& flags, std::uint32_t* stack)
        : p_{phase}, q_{result}, flag_{flags.data()}, pitch_{flags.pitch()}, stack_{stack}
    {}

    bool is_open(std::ptrdiff_t i) const { return flag_[i] == 0; }

    void fill_from(std::ptrdiff_t i)
    {
        q_[i] = p_[i];
        flag_[i] = pixel_flags::unwrapped;
        std::uint32_t* top = stack_;
        const auto push = [&](std::ptrdiff_t k) { *top++ = static_cast<std::uint32_t>(k); };
        for (;;) {
            const std::ptrdiff_t left = i - pitch_, right = i + pitch_, up = i - 1, down = i + 1;
            const float p = p_[i];
            const double q = q_[i];
            if (is_open(left)) reach(left, q + wrap(p_[left] - p)), push(left);
            if (is_open(right)) reach(right, q - wrap(p - p_[right])), push(right);
            if (is_open(up)) reach(up, q + wrap(p_[up] - p)), push(up);
            if (is_open(down)) {
                reach(down, q - wrap(p - p_[down]));
                i = down;
                continue;
            }
            if (top == stack_) return;
            i = *--top;
        }
    }

  private:
    void reach(std::ptrdiff_t i, double value)
    {
        q_[i] = static_cast<float>(value);
        flag_[i] = pixel_flags::unwrapped;
    }

    const float* p_;
    float* q_;
    std::uint8_t* flag_;
    std::ptrdiff_t pitch_;
    std::uint32_t* stack_;
};

}  // namespace

void fill_regions(const float* phase, float* result, pixel_flags& flags, std::uint32_t* stack)
{
    filler fill{phase, result, flags, stack};
    for (std::int32_t y = 0; y < flags.height(); ++y)
        for (std::int32_t x = 0; x < flags.width(); ++x)
            if (const auto i = flags.index(x, y); fill.is_open(i)) fill.fill_from(i);
}

void fill_cuts(const float* phase, float* result, pixel_flags& flags)
{
    std::uint8_t* flag = flags.data();
    const std::ptrdiff_t pitch = flags.pitch();
    // Column by column: a pixel's left and upper neighbour come before it in this order as well as row by row.
    for (std::int32_t x = 0; x < flags.width(); ++x)
        for (std::int32_t y = 0; y < flags.height(); ++y) {
            const std::ptrdiff_t i = flags.index(x, y);
            if (!(flag[i] & pixel_flags::cut)) continue;
            const auto follow = [&](std::ptrdiff_t from) {
                result[i] = static_cast<float>(result[from] + wrap(phase[i] - phase[from]));
                flag[i] |= pixel_flags::unwrapped;
            };
            if (x > 0 && y > 0 && flag[i - pitch] & pixel_flags::unwrapped)
                follow(i - pitch);
            else if (x > 0 && y > 0 && flag[i - 1] & pixel_flags::unwrapped)
                follow(i - 1);
            else
                result[i] = phase[i];
        }
}

}  // namespace qorv::optics
