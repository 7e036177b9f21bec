#pragma once

#include "host/engine/engine.h"
#include "tests/support/same_bytes.h"

/// Calls of script functions in the tests of the host.
namespace support {

using zentrix::host::script_value;
using arguments = std::vector<script_value>;

inline script_value number(std::int64_t n) { return n; }

/// The error text of a call; empty when it succeeds.
template <class Host>
std::string failure(Host& host, const char* name, const arguments& passed)
{
    return message_of([&] { host.call(name, passed); });
}

}  // namespace support
