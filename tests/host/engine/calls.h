#pragma once

#include "host/engine/engine.h"
#include "tests/support/same_bytes.h"

/// Calls of script functions in the tests of the stand-alone host.
namespace support {

using zentrix::host::script_value;
using arguments = std::vector<script_value>;

inline script_value number(std::int64_t n) { return n; }

/// The text with which the engine's or library's call fails; empty when it does not.
template <class Host>
std::string failure(Host& host, const char* name, const arguments& given)
{
    return message_of([&] { host.call(name, given); });
}

}  // namespace support
