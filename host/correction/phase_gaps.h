#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Unwrapping of a phase with gaps: pixels that are infinite or not a number, where nothing was measured. Unwrapping
/// integrates differences between neighbours, so a single such pixel would spread. The gaps are filled before
/// unwrapping and restored afterwards. `width` is the length of a row; a phase has whole rows.
namespace zentrix::host {

/// Fills each gap with the value of the nearest finite pixel, counted in steps to the four neighbours. A filled gap has
/// the residues that its rim has, so that the branch cuts stay consistent around it. Without a finite pixel nothing is
/// changed.
/// Returns  the number of pixels in gaps
std::size_t fill_gaps(std::span<float> phase, std::uint32_t width);

/// Restores the gaps in the result of unwrapping the filled phase, each with its former bits. Gaps are barriers: the
/// finite pixels of each area that they enclose are shifted together by the multiple of 2 pi [rad] with which the
/// area's first pixel (in row order) keeps its wrapped value.
/// phase      the phase before fill_gaps, [rad]
/// unwrapped  same shape, [rad]; changed in place
void restore_gaps(std::span<const float> phase, std::span<float> unwrapped, std::uint32_t width);

}  // namespace zentrix::host
