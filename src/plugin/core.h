#pragma once

#include <string>

#include "framework/plugin_main.h"

namespace QORV::DM {

/// The core object: its construction makes everything the library offers known to the host.
class CZenkor
{
  public:
    /// Registers, in this order, the vector-instruction switch, the image-processing library, the core script functions
    /// and the floating panel. `prefix` starts the names of the panel's functions; the others carry theirs.
    /// Throws  what a refused registration throws
    CZenkor(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prefix);
    CZenkor(const CZenkor&) = delete;
    CZenkor& operator=(const CZenkor&) = delete;
    virtual ~CZenkor() = default;
};

}  // namespace QORV::DM
