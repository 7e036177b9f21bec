#include "library/file_selection.h"
#include "library/platform/select_files.h"

namespace qorv::library::platform {

std::vector<std::string> choose_files(const std::string& start, const std::string& filter, const std::string&)
{
    return expanded(start, filter);
}

bool choose_raw_format(raw_format&, const std::string&) { return true; }

}  // namespace qorv::library::platform
