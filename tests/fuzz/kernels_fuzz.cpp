// Every kernel with several forms: each form that the machine runs gives the bits of the plain form, whatever sizes,
// strides, radii and pixels are, and writes nothing but its result. The first byte chooses the kernel.
#include "tests/fuzz/kernel_checks.h"

namespace {

using check = void (*)(fuzz::input&);

std::vector<check> all_checks()
{
    std::vector<check> all = fuzz::image_kernel_checks();
    const std::vector<check> others = fuzz::flat_kernel_checks();
    all.insert(all.end(), others.begin(), others.end());
    return all;
}

const std::vector<check> checks = all_checks();

}  // namespace

std::vector<std::string> fuzz::seeds()
{
    fuzz::generator random{1};
    std::vector<std::string> made;
    for (std::size_t i = 0; i < 8 * checks.size(); ++i) {
        std::string parameters(40, '\0');
        for (char& one : parameters) one = static_cast<char>(random());
        parameters[0] = static_cast<char>(i % checks.size());
        made.push_back(parameters);
    }
    return made;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool ready = (qorv::dm::read_processor_features(), true);
    static_cast<void>(ready);
    fuzz::input from{data, size};
    checks[from.below(checks.size())](from);
    return 0;
}
