#pragma once

#include <complex>
#include <cstdint>

#include "host/objects/image.h"
#include "host/objects/value.h"

namespace zentrix::host {

/// Calls `each` with the pixels of plane z as complex numbers, row by row; those of a real image have imaginary part 0.
/// Throws  script_error for elements that are no numbers
template <class F>
void visit_plane(const image& pixels, std::uint32_t z, F each)
{
    const auto walk = [&]<class T>(const T* origin) {
        const T* const plane = origin + z * pixels.stride(2);
        for (std::uint32_t y = 0; y < pixels.size(1); ++y)
            for (std::uint32_t x = 0; x < pixels.size(0); ++x)
                each(std::complex<double>(plane[y * pixels.stride(1) + x * pixels.stride(0)]));
    };
    const void* const data = pixels.data();
    switch (pixels.code()) {
        case 9: return walk(static_cast<const std::int8_t*>(data));
        case 6: return walk(static_cast<const std::uint8_t*>(data));
        case 1: return walk(static_cast<const std::int16_t*>(data));
        case 10: return walk(static_cast<const std::uint16_t*>(data));
        case 7: return walk(static_cast<const std::int32_t*>(data));
        case 11: return walk(static_cast<const std::uint32_t*>(data));
        case 2: return walk(static_cast<const float*>(data));
        case 12: return walk(static_cast<const double*>(data));
        case 3: return walk(static_cast<const std::complex<float>*>(data));
        case 13: return walk(static_cast<const std::complex<double>*>(data));
        default: throw script_error{std::string{"an image of type "} + pixels.type().name + " has no numbers to show"};
    }
}

}  // namespace zentrix::host
