#pragma once

#include "image/processor.h"

#include <cstddef>
#include <cstdint>

/// Goldstein's phase unwrapping: residues are joined by branch cuts, the wrapped differences are integrated by a flood
/// fill that crosses no cut, and the pixels on the cuts follow from their neighbours. One thread.
/// Source  Goldstein, Zebker, Werner, Radio Science 23 (1988) 713-720
namespace qorv::optics {

/// Error text for an image of 2^32 or more pixels, counted with a frame of (width + 2) x (height + 1).
inline constexpr char too_long[] = "vector<T> too long";

/// phase      width x height, rows contiguous, [rad]; meant to be in (-pi, pi], but any value is accepted, NaN and
///            infinities included
/// result     same shape, [rad], must not overlap `phase`. The first pixel of each region (in row order) keeps its
///            value, and so do cut pixels in the first row or column and cut pixels that no value reaches
/// width, height  1 or more
/// box_limit  largest box side of the residue search [pixel]; 0: half the sum of width and height; below 3: no search,
///            each residue is cut straight to the nearest edge
/// scratch    4 x width x height bytes, aligned like std::uint32_t, overlapping neither; any contents, overwritten
/// Throws     std::bad_alloc; `result` is unchanged then
/// Exactness  the order of all walks, and with it each bit of the result, is fixed (NaN payloads excepted)
using goldstein_kernel = void(const float* phase, float* result, std::int32_t width, std::int32_t height,
                              std::int32_t box_limit, void* scratch);

/// Bits of the flag image, one std::uint32_t per pixel, that the plain variant keeps in the scratch memory.
namespace goldstein_flag {
inline constexpr std::uint32_t positive_residue = 1;  ///< around the 2 x 2 loop whose top left corner is the pixel
inline constexpr std::uint32_t negative_residue = 2;
inline constexpr std::uint32_t branch_cut = 4;
inline constexpr std::uint32_t growing = 16;  ///< member of the tree that grows now
inline constexpr std::uint32_t unwrapped = 32;
inline constexpr std::uint32_t balanced = 128;  ///< the residue's charge is counted in some tree
}  // namespace goldstein_flag

/// Pixel by pixel, without any shortcut. Needs 8 bytes per pixel and 8 bytes per residue in addition to its arguments.
goldstein_kernel unwrap_goldstein_plain;

/// The same walks over bit masks of the residues and over columns of pixels. Needs up to 5 bytes per pixel and 8 bytes
/// per residue.
goldstein_kernel unwrap_goldstein_fast;

dm::variants<goldstein_kernel> goldstein_variants();

/// The best variant that the script switch allows; parameters as above, checked. Nothing is written when a check fails.
/// Throws  errors::parameters_invalid on null data or sizes below 1; std::length_error{too_long}
void unwrap_goldstein(const float* phase, float* result, std::int32_t width, std::int32_t height,
                      std::int32_t box_limit, void* scratch);

}  // namespace qorv::optics
