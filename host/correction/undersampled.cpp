#include "host/correction/undersampled.h"

#include <algorithm>
#include <complex>
#include <numbers>

#include "host/parallel/for_each_row.h"
#include "lens/contrast_profile.h"

namespace zentrix::host {

namespace {

constexpr int finest_mask = 1024;  // blocks along a side

}  // namespace

void mask_undersampled(picture& shown, const lens::transfer_arguments& arguments, double right, double down)
{
    const auto width = static_cast<std::size_t>(shown.width), pixels = width * static_cast<std::size_t>(shown.height);
    const double distance = std::max(right, down);
    // The edge of the region is smooth: in large pictures, blocks of pixels are judged by their middle.
    const int block = std::max(shown.width, shown.height) / finest_mask + 1;
    const auto threads = threads_for(static_cast<std::ptrdiff_t>(pixels));
    std::vector<std::uint8_t> marks(pixels);
    for_each_row((shown.height + block - 1) / block, threads, [&](std::size_t, std::size_t row) {
        const int top = static_cast<int>(row) * block, bottom = std::min(top + block, shown.height);
        for (int left = 0; left < shown.width; left += block) {
            const std::complex<double> frequency{(left + block / 2 - shown.width / 2) * right,
                                                 (shown.height / 2 - top - block / 2) * down};
            if (lens::largest_phase_step(arguments, frequency, distance) <= std::numbers::pi) continue;
            for (int y = top; y < bottom; ++y)
                std::fill_n(&marks[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(left)],
                            std::min(block, shown.width - left), std::uint8_t{1});
        }
    });
    if (std::ranges::count(marks, 1) == 0) return;
    if (shown.channels == 1) {
        std::vector<std::uint8_t> colours(3 * pixels);
        for (std::size_t i = 0; i < pixels; ++i) std::fill_n(&colours[3 * i], 3, shown.bytes[i]);
        shown.bytes.swap(colours);
        shown.channels = 3;
    }
    for (std::size_t i = 0; i < pixels; ++i)
        if (marks[i]) std::ranges::copy(undersampled_ink, &shown.bytes[3 * i]);
}

}  // namespace zentrix::host
