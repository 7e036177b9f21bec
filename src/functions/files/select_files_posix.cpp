#include "functions/files/file_selection.h"
#include "functions/files/select_files.h"

namespace qorv::platform {

std::vector<std::string> choose_files(const std::string& start, const std::string& filter, const std::string&)
{
    return functions::expanded(start, filter);
}

bool choose_raw_format(raw_format&, const std::string&) { return true; }

}  // namespace qorv::platform
