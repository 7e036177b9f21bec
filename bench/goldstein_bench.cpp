#include "bench.h"
#include "optics/unwrap/goldstein.h"
#include "tests/support/goldstein_literal.h"

#include <cmath>
#include <cstring>
#include <functional>
#include <random>

/// Phase unwrapping of five kinds of images beside the plain transcription of the algorithm, with the times aimed at.
namespace {

using namespace qorv;

struct kind
{
    const char* name;
    double spread;  ///< noise on a smooth surface [rad]; below 0: a lone residue in the middle instead
    double aim_ns;
};

std::vector<float> draw(const kind& what, int n)
{
    std::mt19937 random{7};
    std::normal_distribution<double> noise{0, std::max(what.spread, 1e-9)};
    std::vector<float> phase;
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            const double surface = 0.1 * x + 6 * std::sin(0.02 * y + 0.01 * x) + noise(random);
            const double value = what.spread < 0 ? std::atan2(y - n / 2 + 0.5, x - n / 2 + 0.5) : surface;
            phase.push_back(static_cast<float>(std::remainder(value, 2 * 3.141592653589793)));
        }
    return phase;
}

void run(const kind& what, int n, bool with_literal)
{
    const std::vector<float> phase = draw(what, n);
    std::vector<float> result(phase.size());
    std::vector<float> scratch(phase.size());
    const auto unwrap = [&] { optics::unwrap_goldstein(phase.data(), result.data(), n, n, 0, scratch.data()); };
    const std::string name = std::string{what.name} + ", " + std::to_string(n) + " square";
    const double pixels = static_cast<double>(n) * n;
    unwrap();
    if (with_literal) {
        std::vector<float> wanted;
        const auto literal = bench::measure<bench::processor_clock>(
            pixels,
            [&] {
                wanted = support::goldstein_literal{phase, n, n, 0}.result();
            },
            1);
        bench::check(std::memcmp(result.data(), wanted.data(), result.size() * sizeof(float)) == 0, what.name);
        bench::print(name, "literal", literal);
    } else
        for (std::size_t i = 0; i < phase.size(); ++i)
            bench::check(std::abs(std::remainder(result[i] - phase[i], 2 * 3.141592653589793)) < 0.1, what.name);
    bench::print(name, "product", bench::measure<bench::processor_clock>(pixels, unwrap), what.aim_ns);
}

}  // namespace

int main(int argc, char**)
{
    const kind kinds[] = {{"smooth", 0, 12},
                          {"1 % residues", 0.76, 14},
                          {"10 % residues", 1.06, 30},
                          {"random phase", 100, 75},
                          {"lone residue", -1, 12}};
    std::printf("processor times; ratios are to the times aimed at; any argument leaves the slow transcription out\n");
    for (const kind& what : kinds) {
        run(what, 512, argc < 2);
        run(what, 2048, argc < 2 && what.spread >= 0);
    }
    run(kinds[4], 4096, false);
}
