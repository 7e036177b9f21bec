#pragma once

#include <string>

namespace zentrix::host {

/// The library file to load when a program does not name one: the environment's ZENTRIX_LIBRARY, else "Zentrix64.dll" or
/// "Zentrix64.so" next to the running program, in ../lib/ of it, or in the folder above it.
/// Throws  script_error listing the places when the file is in none of them
std::string find_library_file();

}  // namespace zentrix::host
