#include "host/program/wave_file.h"

#include <algorithm>
#include <complex>

#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/program/describe.h"
#include "host/text/system_path.h"

namespace zentrix::program {

host::image_ref read_wave(const std::string& name)
{
    const auto file = host::system_path(name);
    auto wave = host::read_image(file);
    if (wave->type().meaning != host::element_class::complex)
        throw host::file_error{file, "contains " + one_line(*wave) + "; expected a complex wave"};
    if (wave->dimensions() != 2)
        throw host::file_error{file, "contains " + one_line(*wave) + "; expected a wave of two dimensions"};
    if (wave->code() == HOST_ELEMENT_COMPLEX64) return wave;
    const std::uint32_t sizes[] = {wave->size(0), wave->size(1)};
    auto single = host::image::create(wave->name(), HOST_ELEMENT_COMPLEX64, sizes);
    const auto* from = static_cast<const std::complex<double>*>(wave->data());
    std::copy_n(from, wave->count(), static_cast<std::complex<float>*>(single->data()));
    return single;
}

}  // namespace zentrix::program
