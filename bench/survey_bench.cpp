#include "bench.h"
#include "functions/statistics/survey.h"

#include <cmath>
#include <random>
#include <string>

/// The survey of 2048 square, each variant compared with the plain one.
namespace {

using namespace qorv;

template <class T>
void compare(const std::string& what)
{
    constexpr std::ptrdiff_t n = 2048;
    std::vector<T> pixels(n * n);
    std::mt19937 random{1};
    double sum = 0;
    for (auto& v : pixels) sum += static_cast<double>(v = static_cast<T>(random() % 1000));
    const dm::image<const T> image{pixels.data(), n, n};
    double plain = 0;
    for (auto rows = dm::runnable(functions::survey_variants<T>()); !rows.empty(); rows.pop_back()) {
        functions::survey_record record;
        const auto taken = bench::measure<bench::processor_clock>(n * n, [&] { record = rows.back().function(image); });
        bench::check(record.count == n * n && std::abs(record.sum - sum) <= 1e-12 * sum, what.c_str());
        if (plain == 0) plain = taken.median_ns;
        bench::print(what, rows.back().name, taken, plain);
    }
}

}  // namespace

int main()
{
    dm::read_processor_features();
    compare<float>("survey float");
    compare<double>("survey double");
    compare<std::uint16_t>("survey uint16");
    compare<std::int32_t>("survey int32");
}
