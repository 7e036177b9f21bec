#include "host/files/mrc.h"

#include <algorithm>
#include <cmath>

#include "host/files/binary_input.h"
#include "host/files/header_error.h"
#include "host/files/mrc_header.h"
#include "host/text/number_text.h"

namespace zentrix::host {

namespace {

std::uint32_t code_of_mode(std::uint32_t mode)
{
    const auto* const found = std::ranges::find(mrc::modes, mode, &mrc::mode_of_element::mode);
    if (found != std::end(mrc::modes)) return found->code;
    throw header_error{"it has mode " + std::to_string(mode) +
                       "; expected 0 (int8), 1 (int16), 2 (float32), 4 (complex64) or 6 (uint16)"};
}

/// The order in which the mode is plausible. The machine stamp has the order, too, but older programs set it wrongly.
/// Mode 0 is the same in both orders; the number of columns is then the smaller of both readings.
std::endian order_of(const mrc::header& words)
{
    constexpr std::uint32_t largest_mode = 127;
    if (words[mrc::mode] == 0)
        return words[mrc::size] <= __builtin_bswap32(words[mrc::size]) ? std::endian::little : std::endian::big;
    if (words[mrc::mode] <= largest_mode) return std::endian::little;
    if (__builtin_bswap32(words[mrc::mode]) <= largest_mode) return std::endian::big;
    throw header_error{"it is not an MRC file: its mode is " + std::to_string(mrc::integer(words[mrc::mode]))};
}

/// Scale along column, row and section, each of which is one of the cell's axes.
calibration calibration_of(const mrc::header& words)
{
    calibration about;
    std::array<std::uint32_t, 3> axes{words[mrc::axes], words[mrc::axes + 1], words[mrc::axes + 2]};
    if (auto sorted = axes; std::ranges::sort(sorted), sorted != std::array<std::uint32_t, 3>{1, 2, 3})
        axes = {1, 2, 3};
    const bool is_stack = words[mrc::space_group] == 0;  // the images of a stack have no distance
    for (std::size_t d = 0; d < (is_stack ? 2u : 3u); ++d) {
        const std::size_t along = axes[d] - 1;
        const int samples = mrc::integer(words[mrc::sampling + along]);
        const double length = mrc::real(words[mrc::cell + along]);
        if (samples <= 0 || !(length > 0 && std::isfinite(length))) continue;
        const double angstroms = mrc::angstroms_per_nm * samples;  // of the cell, for a step of 1 nm
        const double step = shortest_number(
            length / angstroms, [&](double one) { return mrc::word_of(one * angstroms) == mrc::word_of(length); });
        double first = mrc::real(words[mrc::origin + along]) / mrc::angstroms_per_nm;
        if (first == 0 || !std::isfinite(first)) first = mrc::integer(words[mrc::start + d]) * step;
        about.axes[d] = {step, first, "nm"};
    }
    return about;
}

image_ref read_volume(const std::filesystem::path& file)
{
    binary_input from{file};
    mrc::header words;
    from.read(words.data(), sizeof words);
    const std::endian order = order_of(words);
    if (order == std::endian::big) reverse_words(std::as_writable_bytes(std::span{words}), 4);

    const std::uint32_t code = code_of_mode(words[mrc::mode]);
    const std::int64_t announced[] = {mrc::integer(words[mrc::size]), mrc::integer(words[mrc::size + 1]),
                                      mrc::integer(words[mrc::size + 2])};
    const auto sizes = checked_sizes(announced);
    from.skip(words[mrc::extended_bytes]);
    require_enough_bytes(sizes, element_of(code).bytes, from.remaining());
    auto result = image::create(utf8_path(file.stem()), code, sizes);
    read_elements(from, order, *result);
    result->set_scale(calibration_of(words));
    return result;
}

}  // namespace

image_ref read_mrc(const std::filesystem::path& file)
{
    return with_file_name(file, [&] { return read_volume(file); });
}

bool is_mrc(std::string_view start) noexcept
{
    constexpr std::size_t mark = 4 * mrc::map_mark;
    return start.size() >= sizeof(mrc::header) && start.substr(mark, 3) == "MAP";
}

}  // namespace zentrix::host
