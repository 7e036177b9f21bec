#pragma once

#include <cstddef>
#include <cstdint>

namespace qorv::optics {

/// The text for an image of more pixels than the fill's stack can tell apart.
inline constexpr char too_long[] = "vector<T> too long";

/// Unwraps a phase by branch cuts: residues are joined by cuts, the wrapped differences are integrated by a flood fill
/// that crosses none, the pixels on the cuts follow from their neighbours. One thread. phase      width x height,
/// contiguous, [rad]; meant to lie in (-pi, pi], but any value, NaN and infinities too, is taken result     the same
/// shape, [rad], not overlapping `phase`. The first pixel of each region (in row order) keeps its
///            value, and so do cut pixels in the first row and column and those that no value reaches
/// width, height  1 or more
/// box_limit  largest box, in pixels, that a search for further residues spans; 0: half the sum of width and height;
/// below
///            3: no search, each residue is cut off to the nearest edge
/// scratch    4 x width x height bytes, aligned like floats, overlapping neither; any contents, none of use afterwards
/// Memory  beside the arguments one byte for each of (width + 2) x (height + 1) pixels; with it at first half a byte a
/// pixel
///         and 8 bytes a residue, later 4 bytes a pixel, of which a smooth phase touches half
/// Throws  errors::parameters_invalid on null data or sizes below 1; too_long from 2^32 pixels (with their frame) on;
///         std::bad_alloc. Nothing is written to `result` then.
/// Exactness  the order of all walks, and with it each bit of the result, is fixed (NaN payloads excepted)
/// Source  Goldstein, Zebker, Werner, Radio Science 23 (1988) 713-720
void unwrap_goldstein(const float* phase, float* result, std::int32_t width, std::int32_t height,
                      std::int32_t box_limit, void* scratch);

}  // namespace qorv::optics
