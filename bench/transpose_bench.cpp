#include "bench.h"
#include "functions/transpose/transpose.h"

// Transposes of 256 cubed: each variant against memcpy of the same bytes. One thread.

namespace {

using namespace qorv;
using functions::transposition;

template <class T>
void compare(const std::string& type)
{
    constexpr std::ptrdiff_t n = 256;
    constexpr std::size_t count = n * n * n, bytes = count * sizeof(T);
    auto from = bench::noise<T>(count, 0, 250);
    std::vector<T> to(count), expected(count);
    const auto view = [](std::vector<T>& pixels) { return functions::voxels_of(dm::image<T>{pixels.data(), n, n, n}); };
    for (const auto& [name, which] : {std::pair{"XZ ", transposition::xz}, {"YZ ", transposition::yz}}) {
        functions::transpose_plain(view(from), view(expected), sizeof(T), which);
        bench::comparison compared{"transpose " + (name + type), double(count)};
        compared.add(
            "memcpy", [&] { std::memcpy(to.data(), from.data(), bytes); }, [&] { return to == from; });
        for (const auto& row : dm::runnable(functions::transpose_variants())) {
            compared.add(
                row.name, [&, row, w = which] { row.function(view(from), view(to), sizeof(T), w); },
                [&] { return to == expected; });
            // In place the check sees one transpose; later ones undo each other in turn.
            compared.add(
                std::string{row.name} + ", in place",
                [&, row, w = which, first = true]() mutable {
                    if (std::exchange(first, false)) to = from;
                    row.function(view(to), view(to), sizeof(T), w);
                },
                [&] { return to == expected; });
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    return bench::run(argc, argv, [] {
        compare<std::uint8_t>("1 byte");
        compare<std::uint16_t>("2 bytes");
        compare<std::uint32_t>("4 bytes");
        compare<std::uint64_t>("8 bytes");
    });
}
