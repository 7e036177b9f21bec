#pragma once

#include <string>

namespace zentrix::host {

/// The library file to load when a program does not name one: the file named in the environment's ZENTRIX_LIBRARY, else
/// "Zentrix64.dll" or "Zentrix64.so" in the folder of the running program (symbolic links to the program are followed).
/// No other folder is searched, because other users may be able to write to it.
/// Throws  script_error naming the file when it does not exist
std::string find_library_file();

}  // namespace zentrix::host
