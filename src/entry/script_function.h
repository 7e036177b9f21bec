#pragma once

#include <span>
#include <string>

#include "binding/native.h"

namespace qorv::dm {

/// A row of a topic's table of script functions. The prototype is `returns` + the prefix of all names + `signature`.
struct script_function
{
    const char* returns;    ///< return type and one blank
    const char* signature;  ///< name and parameter list; their blanks are part of the interface
    void (*add)(Gatan::PlugIn::PlugInMain&, const std::string& prototype);  ///< binding::add_function<native function>
};

using script_functions = std::span<const script_function>;

}  // namespace qorv::dm
