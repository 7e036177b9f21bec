#include "bench.h"
#include "functions/transpose/transpose.h"

#include <cstring>
#include <random>
#include <string>

/// Transposes of 256 cubed, each variant compared with memcpy of the same bytes.
namespace {

using namespace qorv;

template <class T>
void compare(const std::string& type)
{
    constexpr std::ptrdiff_t n = 256, count = n * n * n;
    std::vector<T> from(count), to(count), expected(count);
    std::mt19937_64 random{1};
    for (auto& v : from) v = static_cast<T>(random());
    const auto view = [](std::vector<T>& pixels) { return functions::voxels_of(dm::image<T>{pixels.data(), n, n, n}); };
    const auto copy =
        bench::measure<bench::processor_clock>(count, [&] { std::memcpy(to.data(), from.data(), count * sizeof(T)); });
    bench::print("copy " + type, "memcpy", copy);
    for (const auto& [name, which] :
         {std::pair{"XZ ", functions::transposition::xz}, {"YZ ", functions::transposition::yz}}) {
        functions::transpose_plain(view(from), view(expected), sizeof(T), which);
        for (const auto& row : dm::runnable(functions::transpose_variants())) {
            const auto run = [&, w = which](std::vector<T>& source, std::vector<T>& result) {
                row.function(view(source), view(result), sizeof(T), w);
            };
            bench::print(name + type, row.name,
                         bench::measure<bench::processor_clock>(
                             count, [&] { run(from, to); }, 5),
                         copy.median_ns);
            bench::check(std::memcmp(to.data(), expected.data(), count * sizeof(T)) == 0, name);
            // Each measured run undoes the one before; the warm-up makes their number even.
            bench::print(name + type + " in place", row.name,
                         bench::measure<bench::processor_clock>(
                             count, [&] { run(to, to); }, 5),
                         copy.median_ns);
            bench::check(std::memcmp(to.data(), expected.data(), count * sizeof(T)) == 0, name);
        }
    }
}

}  // namespace

int main()
{
    dm::read_processor_features();
    compare<std::uint8_t>("1 byte");
    compare<std::uint16_t>("2 bytes");
    compare<std::uint32_t>("4 bytes");
    compare<std::uint64_t>("8 bytes");
}
