// Readers of image files: whatever the bytes are, a file is read or refused, in memory that its size justifies. An
// image that was read can be written and read again. The first byte chooses the extension, the others are the file.
#include <cmath>

#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/files/mrc.h"
#include "host/files/npy_stack.h"
#include "host/files/png.h"
#include "host/files/png_text.h"
#include "host/files/tiff.h"
#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/sample_files.h"
#include "tests/support/scratch.h"

/// Of the address sanitizer; null without it.
extern "C" [[gnu::weak]] int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void*, std::size_t),
                                                                       void (*)(const volatile void*));

using namespace zentrix::host;

namespace {

constexpr const char* extensions[] = {".npy", ".dm3", ".dm4", ".mrc", ".tif", ".png", ".st"};

const support::scratch_folder& folder()
{
    static const support::scratch_folder made;
    return made;
}

/// The type, sizes and pixels of an image that was read.
std::string bytes_of(const image& pixels)
{
    std::string bytes = std::to_string(pixels.code());
    for (std::size_t axis = 0; axis < 3; ++axis) bytes += " " + std::to_string(pixels.size(axis));
    return bytes.append(static_cast<const char*>(pixels.data()), pixels.count() * pixels.type().bytes);
}

/// Reads what `write` has written. Nothing when the format does not have such elements or values.
template <class Write>
image_ref after_round_trip(const std::string& name, Write write)
{
    try {
        write(folder() / name);
    } catch (const file_error&) {
        return nullptr;
    }
    return read_image(folder() / name);  // an error here is a fault
}

void check_round_trips(const image& pixels)
{
    const auto npy = after_round_trip("again.npy", [&](const auto& file) { write_image(file, pixels); });
    if (npy && bytes_of(*npy) != bytes_of(pixels)) fuzz::fail("a .npy file has other pixels or sizes");
    const auto tiff = after_round_trip("again.tif", [&](const auto& file) { write_image(file, pixels); });
    if (tiff && bytes_of(*tiff) != bytes_of(pixels)) fuzz::fail("a .tif file has other pixels or sizes");
    const auto mrc = after_round_trip("again.mrc", [&](const auto& file) { write_image(file, pixels); });
    if (mrc && mrc->count() != pixels.count()) fuzz::fail("an .mrc file has another number of pixels");
    if (mrc && mrc->code() == pixels.code() && bytes_of(*mrc) != bytes_of(pixels))
        fuzz::fail("an .mrc file has other pixels or sizes");
    if (pixels.count() > 10000 || pixels.dimensions() > 2) return;  // PNG is slow, and is no stack
    write_image(folder() / "picture.png", pixels);
    read_png_texts(folder() / "picture.png");
}

/// No reader has more pixels than the file has bytes, apart from packed spectra, 64-bit numbers and compressed TIFF.
void check_memory(const image& pixels, std::size_t file_bytes, bool is_tiff)
{
    const std::size_t bytes = pixels.count() * pixels.type().bytes;
    if (bytes > (is_tiff ? 4096 : 16) * file_bytes + 64) fuzz::fail("an image is larger than its file justifies");
}

/// Inputs have some KiB, of which a compressed TIFF makes some MiB at most.
void check_allocation(const volatile void*, std::size_t bytes)
{
    if (bytes > std::size_t{512} << 20) fuzz::fail("memory for " + std::to_string(bytes) + " bytes");
}

const int watched = __sanitizer_install_malloc_and_free_hooks
                        ? __sanitizer_install_malloc_and_free_hooks(check_allocation, [](const volatile void*) {})
                        : 0;

}  // namespace

std::vector<std::string> fuzz::seeds()
{
    std::vector<std::string> made;
    const auto add = [&](std::size_t extension, const std::string& bytes) {
        made.push_back(static_cast<char>(extension) + bytes);
    };
    for (const std::string& bytes : sample_npy_files()) add(0, bytes);
    for (const std::string& bytes : sample_dm_files()) add(1, bytes);
    for (const std::string& bytes : sample_mrc_files()) add(3, bytes);
    for (const std::string& bytes : sample_tiff_files()) add(4, bytes);
    for (const std::string& bytes : sample_png_files()) add(5, bytes);
    return made;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::input from{data, size};
    const std::string name = std::string{"file"} + from.pick(extensions);
    const std::string bytes = from.rest();
    folder().write(name, bytes);
    try {
        limits_in(folder() / name, {});
    } catch (const file_error&) {
    }
    image_ref pixels;
    try {
        pixels = read_image(folder() / name);
    } catch (const file_error&) {
        return 0;
    }
    check_memory(*pixels, bytes.size(), format_of(folder() / name) == "TIFF");
    if (pixels->count() > 1000000) return 0;
    const calibration& scale = pixels->scale();
    if (std::isnan(scale.kilovolts) || scale.kilovolts < 0) fuzz::fail("a voltage is no voltage");
    check_round_trips(*pixels);
    if (auto stack = npy_stack_reader::open(folder() / name, pixels->code()))
        for (std::uint32_t z = 0; z < stack->depth(); ++z) stack->next();
    return 0;
}
