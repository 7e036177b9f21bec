#include "functions/transpose/transpose_entry.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/transpose/transpose.h"
#include "image/overlap.h"

namespace qorv::functions {
namespace {

using binding::image_ref;
using dm::read_lock;
using dm::reading;
using dm::write_lock;
using dm::writing;

/// The host's codes of the element types that can be moved. The host gives their sizes in bytes. The codes without a
/// name are those of colours and packed spectra, with which the library does not compute.
constexpr std::uint32_t movable[] = {
    HOST_ELEMENT_UINT8,
    HOST_ELEMENT_INT8,
    HOST_ELEMENT_BINARY,
    HOST_ELEMENT_INT16,
    HOST_ELEMENT_UINT16,
    HOST_ELEMENT_INT32,
    HOST_ELEMENT_UINT32,
    HOST_ELEMENT_FLOAT32,
    HOST_ELEMENT_FLOAT64,
    HOST_ELEMENT_COMPLEX64,
    HOST_ELEMENT_COMPLEX128,
    8,
    15,
    17,
    18,
    19,
    23,
    24,
    25,
    26,
};

voxels voxels_of(const dm::image_lock& lock, std::size_t element_bytes)
{
    voxels volume{static_cast<std::byte*>(lock.data()), lock.sizes(), {}};
    std::transform(lock.strides().begin(), lock.strides().end(), volume.strides.begin(),
                   [&](std::ptrdiff_t stride) { return stride * static_cast<std::ptrdiff_t>(element_bytes); });
    return volume;
}

/// The volume as an image of bytes, for comparing memory ranges.
dm::image<std::byte> bytes_of(const voxels& volume) { return {volume.data, volume.sizes, volume.strides}; }

image_ref transposed(const image_ref& source, image_ref destination, transposition which)
{
    dm::require_image(source);
    const std::uint32_t nx = dm::size_along(source, 0), ny = dm::size_along(source, 1), nz = dm::size_along(source, 2);
    const std::vector<std::uint32_t> sizes =
        which == transposition::xz ? std::vector{nz, ny, nx} : std::vector{nx, nz, ny};
    const std::uint32_t type = binding::ImageGetDataType(source);
    if (!destination) destination = binding::NewImage(binding::ImageGetName(source), type, sizes);
    for (std::uint32_t axis = 0; axis < 3; ++axis)
        dm::require(dm::size_along(destination, axis) == sizes[axis], dm::errors::invalid_image_size);
    dm::require(binding::ImageGetDataType(destination) == type &&
                    std::find(std::begin(movable), std::end(movable), type) != std::end(movable),
                dm::errors::invalid_image_type);
    const std::uint32_t element_bytes = binding::ImageGetDataElementByteSize(source);
    dm::with_locks(reading{source}, writing{destination}, [&](const read_lock& from, const write_lock& to) {
        const voxels original = voxels_of(from, element_bytes), result = voxels_of(to, element_bytes);
        dm::require_in_place_or_apart(bytes_of(original), bytes_of(result));
        const auto transpose = which == transposition::xz ? transpose_xz : transpose_yz;
        transpose(original, result, element_bytes);
    });
    return destination;
}

image_ref TransposeXZDM(image_ref imgSrc, image_ref imgDst)
{
    const dm::timing_scope timing{"TransposeXZDM"};
    return transposed(imgSrc, std::move(imgDst), transposition::xz);
}

image_ref TransposeYZDM(image_ref imgSrc, image_ref imgDst)
{
    const dm::timing_scope timing{"TransposeYZDM"};
    return transposed(imgSrc, std::move(imgDst), transposition::yz);
}

constexpr dm::script_function rows[] = {
    {"ImageRef ", "TransposeXZ(ImageRef imgSrc, ImageRef imgDst)", binding::add_function<TransposeXZDM>},
    {"ImageRef ", "TransposeYZ(ImageRef imgSrc, ImageRef imgDst)", binding::add_function<TransposeYZDM>},
};

}  // namespace

const dm::script_functions transpose_functions{rows};

}  // namespace qorv::functions
