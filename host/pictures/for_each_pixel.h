#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "host/objects/image.h"
#include "host/objects/value.h"

namespace zentrix::host {

/// Calls `each` with the pixels of row y in plane z as complex numbers; pixels of a real image have imaginary part 0.
/// Throws  script_error for elements that are not numbers
template <class F>
void for_each_pixel_of_row(const image& pixels, std::uint32_t y, std::uint32_t z, F&& each)
{
    const auto visit = [&]<class T>(const T* origin) {
        const T* const row = origin + z * pixels.stride(2) + y * pixels.stride(1);
        for (std::uint32_t x = 0; x < pixels.size(0); ++x) each(std::complex<double>(row[x * pixels.stride(0)]));
    };
    const void* const data = pixels.data();
    switch (pixels.code()) {
        case HOST_ELEMENT_INT8: return visit(static_cast<const std::int8_t*>(data));
        case HOST_ELEMENT_UINT8: return visit(static_cast<const std::uint8_t*>(data));
        case HOST_ELEMENT_INT16: return visit(static_cast<const std::int16_t*>(data));
        case HOST_ELEMENT_UINT16: return visit(static_cast<const std::uint16_t*>(data));
        case HOST_ELEMENT_INT32: return visit(static_cast<const std::int32_t*>(data));
        case HOST_ELEMENT_UINT32: return visit(static_cast<const std::uint32_t*>(data));
        case HOST_ELEMENT_FLOAT32: return visit(static_cast<const float*>(data));
        case HOST_ELEMENT_FLOAT64: return visit(static_cast<const double*>(data));
        case HOST_ELEMENT_COMPLEX64: return visit(static_cast<const std::complex<float>*>(data));
        case HOST_ELEMENT_COMPLEX128: return visit(static_cast<const std::complex<double>*>(data));
        default: throw script_error{std::string{"an image of type "} + pixels.type().name + " has no numbers to show"};
    }
}

/// The same for all pixels of plane z, row by row.
template <class F>
void for_each_pixel_of_plane(const image& pixels, std::uint32_t z, F&& each)
{
    for (std::uint32_t y = 0; y < pixels.size(1); ++y) for_each_pixel_of_row(pixels, y, z, each);
}

}  // namespace zentrix::host
