#include "functions/transpose/transpose.h"

#include "image/errors.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qorv::functions {

namespace {

std::pair<int, int> axes_of(transposition which)
{
    return which == transposition::xz ? std::pair{0, 2} : std::pair{1, 2};
}

std::byte* at(const voxels& volume, std::ptrdiff_t x, std::ptrdiff_t y, std::ptrdiff_t z)
{
    return volume.data + x * volume.strides[0] + y * volume.strides[1] + z * volume.strides[2];
}

/// Elements whose size the compiler knows: one move each.
template <std::size_t bytes>
struct fixed_element
{
    static void copy(const std::byte* from, std::byte* to) { std::memcpy(to, from, bytes); }
    static void exchange(std::byte* a, std::byte* b)
    {
        std::byte kept[bytes];
        std::memcpy(kept, a, bytes);
        std::memcpy(a, b, bytes);
        std::memcpy(b, kept, bytes);
    }
};

struct any_element
{
    std::size_t bytes;
    void copy(const std::byte* from, std::byte* to) const { std::memcpy(to, from, bytes); }
    void exchange(std::byte* a, std::byte* b) const { std::swap_ranges(a, a + bytes, b); }
};

template <class Element>
void copy_transposed(const voxels& from, const voxels& to, std::pair<int, int> axes, Element element)
{
    voxels source = from;  // indexed with the destination's indices
    std::swap(source.strides[axes.first], source.strides[axes.second]);
    for (std::ptrdiff_t z = 0; z < to.sizes[2]; ++z)
        for (std::ptrdiff_t y = 0; y < to.sizes[1]; ++y)
            for (std::ptrdiff_t x = 0; x < to.sizes[0]; ++x) element.copy(at(source, x, y, z), at(to, x, y, z));
}

/// Each pair once: of two mirrored elements the one with the greater index along the later axis is visited.
template <class Element>
void exchange_mirrored(const voxels& volume, std::pair<int, int> axes, Element element)
{
    voxels mirror = volume;
    std::swap(mirror.strides[axes.first], mirror.strides[axes.second]);
    const bool xz = axes.first == 0;
    for (std::ptrdiff_t z = 0; z < volume.sizes[2]; ++z)
        for (std::ptrdiff_t y = 0; y < (xz ? volume.sizes[1] : z); ++y)
            for (std::ptrdiff_t x = 0; x < (xz ? z : volume.sizes[0]); ++x)
                element.exchange(at(volume, x, y, z), at(mirror, x, y, z));
}

template <class Element>
void transpose_elements(const voxels& from, const voxels& to, transposition which, Element element)
{
    if (from.data == to.data)
        exchange_mirrored(to, axes_of(which), element);
    else
        copy_transposed(from, to, axes_of(which), element);
}

void transpose(const voxels& from, const voxels& to, std::size_t element_bytes, transposition which)
{
    auto exchanged = from.sizes;
    std::swap(exchanged[axes_of(which).first], exchanged[axes_of(which).second]);
    dm::require(to.sizes == exchanged, dm::errors::invalid_image_size);
    dm::choose(transpose_variants()).function(from, to, element_bytes, which);
}

}  // namespace

void transpose_plain(const voxels& from, const voxels& to, std::size_t element_bytes, transposition which)
{
    switch (element_bytes) {
        case 1: return transpose_elements(from, to, which, fixed_element<1>{});
        case 2: return transpose_elements(from, to, which, fixed_element<2>{});
        case 4: return transpose_elements(from, to, which, fixed_element<4>{});
        case 8: return transpose_elements(from, to, which, fixed_element<8>{});
        case 16: return transpose_elements(from, to, which, fixed_element<16>{});
        default: return transpose_elements(from, to, which, any_element{element_bytes});
    }
}

dm::variants<transpose_kernel> transpose_variants()
{
    static constexpr dm::variant<transpose_kernel> rows[] = {{"sse2", dm::cpu::sse2, transpose_simd<xsimd::sse2>},
                                                             {"plain", dm::cpu::none, transpose_plain}};
    return rows;
}

void transpose_xz(const voxels& from, const voxels& to, std::size_t element_bytes)
{
    transpose(from, to, element_bytes, transposition::xz);
}

void transpose_yz(const voxels& from, const voxels& to, std::size_t element_bytes)
{
    transpose(from, to, element_bytes, transposition::yz);
}

}  // namespace qorv::functions
