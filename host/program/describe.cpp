#include "host/program/describe.h"

#include "host/files/npy.h"
#include "host/program/json.h"

namespace zentrix::program {

std::string one_line(const host::image& pixels)
{
    std::string text = host::dtype_name(pixels.type());
    for (std::size_t d = 0; d < pixels.dimensions(); ++d)
        text += (d == 0 ? " " : " x ") + std::to_string(pixels.size(d));
    return text;
}

std::string as_json(const host::image& pixels, const std::string& file)
{
    std::vector<std::string> sizes;
    for (std::size_t d = 0; d < pixels.dimensions(); ++d) sizes.push_back(std::to_string(pixels.size(d)));
    std::vector<std::pair<std::string, std::string>> members{{"type", json_string(host::dtype_name(pixels.type()))},
                                                             {"size", json_array(sizes)}};
    if (!file.empty()) members.emplace_back("file", json_string(file));
    return json_object(members);
}

}  // namespace zentrix::program
