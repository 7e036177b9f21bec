#include "functions/system/special_directory.h"

#include <windows.h>

#include <shlobj.h>  // after windows.h

#include "binding/text_windows.h"

namespace qorv::platform {

std::string special_directory(int folder, bool create)
{
    constexpr std::size_t path_room = 261;
    const int code = create ? folder | CSIDL_FLAG_CREATE : folder;
    char path[path_room] = {};
    PIDLIST_ABSOLUTE items = nullptr;
    if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, code, &items))) {
        SHGetPathFromIDListA(items, path);
        CoTaskMemFree(items);
    } else if (FAILED(SHGetFolderPathA(nullptr, code, nullptr, 0, path)))
        return {};
    std::string found{path};
    if (found.empty()) return {};
    if (found.size() < path_room - 1) found += '\\';
    return qorv::platform::to_utf8(found);
}

}  // namespace qorv::platform
