#include "host/program/describe.h"

#include "host/files/npy.h"

namespace zentrix::program {

std::string one_line(const host::image& pixels)
{
    std::string text = host::dtype_name(pixels.type());
    for (std::size_t d = 0; d < pixels.dimensions(); ++d)
        text += (d == 0 ? " " : " x ") + std::to_string(pixels.size(d));
    return text;
}

json as_json(const host::image& pixels, const std::string& file)
{
    json described{{"type", host::dtype_name(pixels.type())}, {"size", json::array()}};
    for (std::size_t d = 0; d < pixels.dimensions(); ++d) described["size"].push_back(pixels.size(d));
    if (!file.empty()) described["file"] = file;
    return described;
}

json as_json(const host::unwrap_report& report)
{
    return {{"positive_residues", report.positive_residues},
            {"negative_residues", report.negative_residues},
            {"cut_pixels", report.cut_pixels},
            {"regions", report.regions},
            {"unreached", report.unreached},
            {"left_out", report.left_out}};
}

}  // namespace zentrix::program
