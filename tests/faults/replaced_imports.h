#pragma once

#include <map>
#include <string>

namespace faults {

/// Makes a loaded DLL call other functions than those that it imports. Windows only.
/// file          its path
/// replacements  functions by the name of the import
/// Returns       whether it imports all of them by name
bool replace_imports(const std::string& file, const std::map<std::string, void (*)()>& replacements);

}  // namespace faults
