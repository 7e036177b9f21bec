#pragma once

#include <string>

#include "framework/plugin_main.h"

namespace QORV::DM {

/// The core object: its constructor registers everything that the library offers.
class CZenkor
{
  public:
    /// Registers, in this order, the vector-instruction switch, the image-processing functions, the core script
    /// functions and the floating panel. `prefix` precedes the names of the panel's functions; the other names include
    /// their own.
    /// Throws  as binding::add_function and PlugInMain::AddFloatingWindow
    CZenkor(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prefix);
    CZenkor(const CZenkor&) = delete;
    CZenkor& operator=(const CZenkor&) = delete;
    virtual ~CZenkor() = default;
};

}  // namespace QORV::DM
