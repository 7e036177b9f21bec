#pragma once

#include "host/program/json.h"

namespace zentrix::program {

/// Version, system, compiler, library file and linked libraries with their versions:
///     {"version": "0.2.0", "system": "Linux x86-64", "compiler": "GCC 12.2.0", "library": "/.../Zentrix64.so",
///      "libraries": {"FFTW": "3.3.10", ...}}
/// library_file  as on the command line; empty: the one next to the program. "library" is null if there is none.
json version_facts(const std::string& library_file);

/// The same for people, a line for each.
std::string version_text(const json& facts);

}  // namespace zentrix::program
