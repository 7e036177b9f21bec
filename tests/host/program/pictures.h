#pragma once

#include <complex>
#include <vector>

#include "host/files/npy.h"

namespace support {

/// Writes an image of width x height pixels value(x, y).
template <class T, class F>
void write_image_of(const std::filesystem::path& file, std::uint32_t code, int width, int height, F value)
{
    const std::uint32_t sizes[] = {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    const auto made = zentrix::host::image::create("test", code, sizes);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) made->at<T>(x, y) = static_cast<T>(value(x, y));
    zentrix::host::write_npy(file, *made);
}

template <class F>
void write_wave(const std::filesystem::path& file, int width, int height, F value)
{
    write_image_of<std::complex<float>>(file, HOST_ELEMENT_COMPLEX64, width, height, value);
}

template <class F>
void write_real(const std::filesystem::path& file, int width, int height, F value)
{
    write_image_of<float>(file, HOST_ELEMENT_FLOAT32, width, height, value);
}

/// All pixels of a file, row by row.
template <class T>
std::vector<T> pixels_of(const std::filesystem::path& file)
{
    const auto read = zentrix::host::read_npy(file);
    const auto* begin = static_cast<const T*>(read->data());
    return {begin, begin + read->count()};
}

template <class T>
double largest_difference(const std::vector<T>& a, const std::vector<T>& b)
{
    double largest = a.size() == b.size() ? 0 : HUGE_VAL;
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
        largest = std::max<double>(largest, std::abs(a[i] - b[i]));
    return largest;
}

}  // namespace support
