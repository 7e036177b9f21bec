#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zentrix::host {

/// How well a phase could be unwrapped, found by comparing the wrapped phase with the result. Pixels that are not
/// finite are left out, with all pairs and loops that contain one.
struct unwrap_report
{
    /// Loops of 2 x 2 pixels around which the wrapped differences add up to a full turn. Positive: the phase grows
    /// clockwise on the displayed image, from left to right along the upper side.
    std::size_t positive_residues = 0, negative_residues = 0;
    /// Pixels that have a cut to a neighbour (left, right, above, below): their difference in the result is not the
    /// wrapped difference.
    std::size_t cut_pixels = 0;
    /// Areas that are connected by neighbours without a cut. Each has an offset of its own.
    std::size_t regions = 0;
    /// Pixels of regions in which nothing was unwrapped: regions with a cut to a larger one, all of whose pixels have
    /// their wrapped value.
    std::size_t unreached = 0;
    std::size_t left_out = 0;

    /// Sums up the planes of a volume.
    unwrap_report& operator+=(const unwrap_report& plane)
    {
        positive_residues += plane.positive_residues;
        negative_residues += plane.negative_residues;
        cut_pixels += plane.cut_pixels;
        regions += plane.regions;
        unreached += plane.unreached;
        left_out += plane.left_out;
        return *this;
    }
};

/// phase      wrapped, whole rows of `width` pixels [rad]
/// unwrapped  same shape [rad]; each finite value differs from `phase` by a multiple of 2 pi, apart from rounding
/// labels     same shape, overwritten: the number of each pixel's region, 1 for the largest; 0 for pixels left out
/// cuts       same shape, overwritten: 1 for cut_pixels, 0 for others; or empty
/// Throws  std::bad_alloc
unwrap_report report_on_unwrapping(std::span<const float> phase, std::span<const float> unwrapped, std::uint32_t width,
                                   std::span<std::int32_t> labels, std::span<std::uint8_t> cuts = {});

}  // namespace zentrix::host
