#include "host/hologram/hologram_plane.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "host/objects/value.h"

namespace zentrix::host {

namespace {

void require_hologram(const image& hologram)
{
    const auto meaning = hologram.type().meaning;
    const bool is_real = meaning == element_class::real || meaning == element_class::signed_integer ||
                         meaning == element_class::unsigned_integer;
    if (!is_real)
        throw script_error{std::string{"A hologram is an image of integers or reals, not "} + hologram.type().name +
                           (meaning == element_class::complex ? ": this is a wave already." : ".")};
    if (hologram.dimensions() < 2) throw script_error{"A hologram has two dimensions, or three as a stack."};
    if (hologram.dimensions() > 2 && (hologram.size(0) == 3 || hologram.size(0) == 4))
        throw script_error{"A hologram has one value per pixel. This image has " + std::to_string(hologram.size(0)) +
                           ", as colour pictures have: convert it to greys, or take one channel."};
}

template <typename T>
std::span<T> values_of(image& plane)
{
    return {static_cast<T*>(plane.data()), plane.count()};
}

template <typename T>
void require_finite(std::span<const T> values, const char* what, const char* problem)
{
    const auto bad = std::ranges::count_if(values, [](T value) { return !std::isfinite(value); });
    if (bad > 0)
        throw script_error{std::to_string(bad) + " of " + std::to_string(values.size()) + " pixels of the " + what +
                           problem};
}

/// The exponent by which values of another magnitude than that of usual recordings are to be divided; otherwise 0.
template <typename T>
int exponent_of(std::span<const T> values)
{
    T largest = 0;
    for (const T value : values) largest = std::max(largest, std::abs(value));
    if (largest == 0 || (largest >= std::ldexp(T{1}, -30) && largest <= std::ldexp(T{1}, 30))) return 0;
    std::vector<T> moduli(values.size());
    std::ranges::transform(values, moduli.begin(), [](T value) { return std::abs(value); });
    const auto middle = moduli.begin() + static_cast<std::ptrdiff_t>(moduli.size() / 2);
    std::nth_element(moduli.begin(), middle, moduli.end());
    int exponent = 0;
    std::frexp(*middle > 0 ? *middle : largest, &exponent);
    return exponent;
}

/// Checks and scales the values in place. Returns the exponent.
template <typename T>
int scale(std::span<T> values, const char* what)
{
    require_finite<T>(values, what, " are infinite or not a number.");
    const int exponent = exponent_of<T>(values);
    if (exponent != 0)
        for (T& value : values) value = std::ldexp(value, -exponent);
    return exponent;
}

}  // namespace

hologram_values hologram_plane(const image_ref& hologram, std::uint32_t z, const char* what)
{
    require_hologram(*hologram);
    const std::uint32_t sizes[] = {hologram->size(0), hologram->size(1)};
    const std::ptrdiff_t strides[] = {hologram->stride(0), hologram->stride(1)};
    auto* const first =
        static_cast<std::byte*>(hologram->data()) + hologram->stride(2) * std::ptrdiff_t{z} * hologram->type().bytes;
    auto plane =
        image::over(hologram->name(), hologram->code(), first, sizes, strides, access::read, hologram)->clone();
    int exponent = 0;
    if (plane->code() == HOST_ELEMENT_FLOAT64) {  // before the conversion, which may overflow
        exponent = scale(values_of<double>(*plane), what);
        plane->convert_to_float();
    } else {
        plane->convert_to_float();
        exponent = scale(values_of<float>(*plane), what);
    }
    require_finite<float>(values_of<float>(*plane), what, " are more than 10^38 times as large as the median.");
    plane->set_scale(hologram->scale());
    return {plane, exponent};
}

}  // namespace zentrix::host
