#pragma once

#include <string>

namespace qorv::platform {

/// The path of a special folder with the platform's separator at its end; empty when there is none.
/// folder   folder identifier: a CSIDL value, on every platform
/// create   whether a missing folder is created
/// Outside Windows the identifiers of the user's own folders are mapped to the XDG directories: 0x00 and 0x10 desktop,
/// 0x05 documents, 0x0d music, 0x0e videos, 0x15 templates, 0x1a configuration, 0x1c data, 0x27 pictures, 0x28 home.
std::string special_directory(int folder, bool create);

}  // namespace qorv::platform
