#pragma once

#include <complex>
#include <cstdint>
#include <string>

#include "host/objects/image.h"
#include "host/objects/value.h"

namespace zentrix::host {

/// Calls `use` with the element at the origin, as a pointer to const of its C++ type.
/// Throws  script_error for elements that are not numbers
template <class F>
decltype(auto) with_numbers_of(const image& pixels, F&& use)
{
    const void* const data = pixels.data();
    switch (pixels.code()) {
        case HOST_ELEMENT_INT8: return use(static_cast<const std::int8_t*>(data));
        case HOST_ELEMENT_UINT8: return use(static_cast<const std::uint8_t*>(data));
        case HOST_ELEMENT_INT16: return use(static_cast<const std::int16_t*>(data));
        case HOST_ELEMENT_UINT16: return use(static_cast<const std::uint16_t*>(data));
        case HOST_ELEMENT_INT32: return use(static_cast<const std::int32_t*>(data));
        case HOST_ELEMENT_UINT32: return use(static_cast<const std::uint32_t*>(data));
        case HOST_ELEMENT_FLOAT32: return use(static_cast<const float*>(data));
        case HOST_ELEMENT_FLOAT64: return use(static_cast<const double*>(data));
        case HOST_ELEMENT_COMPLEX64: return use(static_cast<const std::complex<float>*>(data));
        case HOST_ELEMENT_COMPLEX128: return use(static_cast<const std::complex<double>*>(data));
        default: throw script_error{std::string{"an image of type "} + pixels.type().name + " has no numbers to show"};
    }
}

/// Calls `each` with the pixels of plane z, row by row, as complex numbers; a real pixel has imaginary part 0.
/// Throws  script_error for elements that are not numbers
template <class F>
void for_each_pixel_of_plane(const image& pixels, std::uint32_t z, F&& each)
{
    with_numbers_of(pixels, [&](const auto* origin) {
        for (std::uint32_t y = 0; y < pixels.size(1); ++y) {
            const auto* const row = origin + z * pixels.stride(2) + y * pixels.stride(1);
            for (std::uint32_t x = 0; x < pixels.size(0); ++x) each(std::complex<double>(row[x * pixels.stride(0)]));
        }
    });
}

}  // namespace zentrix::host
