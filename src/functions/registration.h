#pragma once

#include <string>

#include "framework/plugin_main.h"

namespace qorv::functions {

/// Registers the image-processing script functions in a fixed order, each named `prefix` + its own name.
/// Throws  what binding::add_function throws; the functions before the failing one stay registered until the plug-in's
///         tear-down
void register_functions(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prefix);

}  // namespace qorv::functions
