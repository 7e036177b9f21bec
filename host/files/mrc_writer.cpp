#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>

#include "host/files/header_error.h"
#include "host/files/mrc.h"
#include "host/files/mrc_header.h"
#include "host/files/pending_file.h"

namespace zentrix::host {

namespace {

constexpr char label[] = "Zentrix64";

template <class T>
double largest_part(T value)
{
    if constexpr (std::is_arithmetic_v<T>)
        return std::abs(static_cast<double>(value));
    else
        return std::max(std::abs(value.real()), std::abs(value.imag()));
}

/// The image in another element type.
/// Throws  header_error for a value that is finite only in the former type, and for an integer that would be rounded
template <class From, class To>
image_ref converted(const image& from, std::uint32_t code)
{
    const std::uint32_t sizes[] = {from.size(0), from.size(1), from.size(2)};
    auto result = image::create(from.name(), code, std::span{sizes}.first(from.dimensions()));
    const auto* source = static_cast<const From*>(from.data());
    auto* to = static_cast<To*>(result->data());
    for (std::size_t i = 0; i < from.count(); ++i) {
        to[i] = static_cast<To>(source[i]);
        bool fits = std::isfinite(largest_part(to[i])) || !std::isfinite(largest_part(source[i]));
        if constexpr (std::is_integral_v<From>) fits = static_cast<double>(to[i]) == static_cast<double>(source[i]);
        if (!fits)
            throw header_error{
                "cannot be written: MRC files have float32 at most, which some of its values do not "
                "fit; .npy keeps them"};
    }
    return result;
}

using converter = image_ref (*)(const image& from, std::uint32_t code);

/// What takes the place of an element type that the format does not have.
struct substitute
{
    std::uint32_t of, code;
    converter convert;
};
constexpr substitute substitutes[] = {
    {HOST_ELEMENT_UINT8, HOST_ELEMENT_UINT16, converted<std::uint8_t, std::uint16_t>},
    {HOST_ELEMENT_INT32, HOST_ELEMENT_FLOAT32, converted<std::int32_t, float>},
    {HOST_ELEMENT_UINT32, HOST_ELEMENT_FLOAT32, converted<std::uint32_t, float>},
    {HOST_ELEMENT_FLOAT64, HOST_ELEMENT_FLOAT32, converted<double, float>},
    {HOST_ELEMENT_COMPLEX128, HOST_ELEMENT_COMPLEX64, converted<std::complex<double>, std::complex<float>>},
};

/// A contiguous copy in an element type that the format has; null if the image itself can be written as it is.
image_ref storable_copy(const image& pixels)
{
    const image_ref plain = pixels.is_contiguous() ? nullptr : pixels.clone();
    const auto* const found = std::ranges::find(substitutes, pixels.code(), &substitute::of);
    return found == std::end(substitutes) ? plain : found->convert(plain ? *plain : pixels, found->code);
}

/// Minimum, maximum, mean and standard deviation.
template <class T>
void set_statistics(mrc::header& words, std::span<const T> elements)
{
    const auto n = static_cast<double>(elements.size());
    const auto [smallest, largest] = std::ranges::minmax(elements);
    double sum = 0, squares = 0;
    for (const T value : elements) sum += value;
    for (const T value : elements) squares += (value - sum / n) * (value - sum / n);
    const double values[] = {static_cast<double>(smallest), static_cast<double>(largest), sum / n};
    std::ranges::transform(values, &words[mrc::statistics], mrc::word_of);
    words[mrc::deviation] = mrc::word_of(std::sqrt(squares / n));
}

void set_statistics(mrc::header& words, const image& pixels)
{
    const auto of = [&]<class T>(T) {
        set_statistics(words, std::span{static_cast<const T*>(pixels.data()), pixels.count()});
    };
    switch (pixels.code()) {
        case HOST_ELEMENT_INT8: return of(std::int8_t{});
        case HOST_ELEMENT_INT16: return of(std::int16_t{});
        case HOST_ELEMENT_UINT16: return of(std::uint16_t{});
        case HOST_ELEMENT_FLOAT32: return of(float{});
        default: break;
    }
    const double unknown[] = {0, -1, -2};  // as the standard marks it
    std::ranges::transform(unknown, &words[mrc::statistics], mrc::word_of);
    words[mrc::deviation] = mrc::word_of(-1);
}

void set_scale(mrc::header& words, const image& pixels, const calibration& about)
{
    for (std::size_t d = 0; d < 3; ++d) {
        const axis_scale& axis = about.axes[d];
        const double angstroms = nanometres_in(axis.unit) * mrc::angstroms_per_nm;
        if (angstroms == 0 || axis.step <= 0) continue;
        words[mrc::cell + d] = mrc::word_of(axis.step * angstroms * pixels.size(d));
        words[mrc::origin + d] = mrc::word_of(axis.first * angstroms);
    }
}

mrc::header header_of(const image& pixels, const calibration& about, std::uint32_t mode)
{
    mrc::header words{};
    const bool is_volume = pixels.dimensions() == 3 && nanometres_in(about.axes[2].unit) > 0;
    for (std::size_t d = 0; d < 3; ++d) {
        words[mrc::size + d] = pixels.size(d);
        words[mrc::sampling + d] = d == 2 && !is_volume ? 1 : pixels.size(d);
        words[mrc::angles + d] = mrc::word_of(90);
        words[mrc::axes + d] = static_cast<std::uint32_t>(d) + 1;
    }
    words[mrc::mode] = mode;
    words[mrc::space_group] = is_volume ? 1 : 0;
    words[mrc::version] = mrc::revision;
    words[mrc::map_mark] = mrc::map_text;
    words[mrc::machine] = mrc::little_endian;
    words[mrc::labels] = 1;
    std::memcpy(&words[mrc::labels + 1], label, sizeof label - 1);
    set_scale(words, pixels, about);
    set_statistics(words, pixels);
    return words;
}

}  // namespace

void write_mrc(const std::filesystem::path& file, const image& pixels)
{
    with_file_name(file, [&] {
        const image_ref copy = storable_copy(pixels);
        const image& stored = copy ? *copy : pixels;
        const auto* const mode = std::ranges::find(mrc::modes, stored.code(), &mrc::mode_of_element::code);
        if (mode == std::end(mrc::modes))
            throw header_error{std::string{"an image of type "} + pixels.type().name + " cannot be written as .mrc"};
        const mrc::header words = header_of(stored, pixels.scale(), mode->mode);
        const std::size_t bytes = stored.count() * stored.type().bytes;
        pending_file output{file};
        output.reserve(sizeof words + bytes);
        output.write(words.data(), sizeof words);
        output.write(stored.data(), bytes);
        output.commit();
    });
}

}  // namespace zentrix::host
