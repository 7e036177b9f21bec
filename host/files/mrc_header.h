#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "host/objects/element.h"

/// The first 1024 bytes of an MRC file as 256 words.
namespace zentrix::host::mrc {

using header = std::array<std::uint32_t, 256>;

/// Places in the header, counted from 0; the standard counts from 1.
enum place : std::size_t
{
    size = 0,             ///< three integers: columns, rows, sections
    mode = 3,             ///< element type
    start = 4,            ///< three integers: first column, row, section
    sampling = 7,         ///< three integers: pixels along the cell's axes
    cell = 10,            ///< three reals: lengths of the cell's axes [A]
    angles = 13,          ///< three reals: of the cell [degrees]
    axes = 16,            ///< three integers: the cell's axes (1, 2, 3) along columns, rows, sections
    statistics = 19,      ///< three reals: minimum, maximum, mean
    space_group = 22,     ///< 0: images or a stack of them
    extended_bytes = 23,  ///< of the extended header
    version = 27,         ///< year of the standard and revision, 20140
    origin = 49,          ///< three reals: position of the first pixel [A]
    map_mark = 52,        ///< "MAP "
    machine = 53,         ///< byte order
    deviation = 54,       ///< real: standard deviation
    labels = 55           ///< number of labels, then ten labels of 80 characters
};

constexpr std::uint32_t map_text = 0x2050414d;       // "MAP " in little-endian order
constexpr std::uint32_t little_endian = 0x00004444;  // the bytes 44 44 00 00
constexpr std::uint32_t revision = 20140;
constexpr double angstroms_per_nm = 10;

struct mode_of_element
{
    std::uint32_t mode;
    std::uint32_t code;
};
constexpr mode_of_element modes[] = {{0, HOST_ELEMENT_INT8},
                                     {1, HOST_ELEMENT_INT16},
                                     {2, HOST_ELEMENT_FLOAT32},
                                     {4, HOST_ELEMENT_COMPLEX64},
                                     {6, HOST_ELEMENT_UINT16}};

inline std::int32_t integer(std::uint32_t word) noexcept { return std::bit_cast<std::int32_t>(word); }
inline double real(std::uint32_t word) noexcept { return std::bit_cast<float>(word); }
inline std::uint32_t word_of(double value) noexcept { return std::bit_cast<std::uint32_t>(static_cast<float>(value)); }

}  // namespace zentrix::host::mrc
