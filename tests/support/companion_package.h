#pragma once

#include "host/engine/engine.h"

namespace support {

/// Options of a host that reports the companion package as present.
inline zentrix::host::engine_options with_companion_package()
{
    zentrix::host::engine_options options;
    options.file_exists = [](const std::string&) { return true; };
    return options;
}

}  // namespace support
