#include "bench.h"
#include "optics/unwrap/goldstein.h"

#include <cmath>

// Phase unwrapping of smooth and noisy surfaces and of a lone residue, whose search covers the image. One thread.

namespace {

using namespace qorv;

/// spread  noise on a smooth surface [rad]; below 0: a vortex around the middle instead
std::vector<float> draw(double spread, int n)
{
    std::mt19937 random{7};
    std::normal_distribution<double> noise{0, std::max(spread, 1e-9)};
    std::vector<float> phase;
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            const double surface = 0.1 * x + 6 * std::sin(0.02 * y + 0.01 * x) + noise(random);
            const double value = spread < 0 ? std::atan2(y - n / 2 + 0.5, x - n / 2 + 0.5) : surface;
            phase.push_back(static_cast<float>(std::remainder(value, 2 * 3.141592653589793)));
        }
    return phase;
}

void compare(const std::string& what, double spread, int n)
{
    const std::vector<float> phase = draw(spread, n);
    std::vector<float> scratch(phase.size());
    bench::compare_variants<float>("unwrap " + std::to_string(n) + ", " + what, double(n) * n, phase.size(),
                                   optics::goldstein_variants(),
                                   [&](auto* kernel, float* to) { kernel(phase.data(), to, n, n, 0, scratch.data()); });
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::run(argc, argv, [] {
        for (const int n : {512, 2048}) {
            compare("smooth", 0, n);
            compare("1 % residues", 0.76, n);
            compare("10 % residues", 1.06, n);
            compare("random phase", 100, n);
        }
        compare("lone residue", -1, 512);
    });
}
