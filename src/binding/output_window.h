#pragma once

#include <cstdint>
#include <exception>
#include <string_view>

namespace qorv::binding {

/// Writes to the host's output window. If the host has none, writes "No DM output window\n" to the debugger output
/// (standard error outside Windows) instead.
/// Throws  as the functions of host_functions.h
void WriteOutputWindow(std::string_view module_name, std::uint32_t output_type, std::string_view text);

/// Writes "`what` ended with an error: <text>" as a warning of this library, for errors that cannot be thrown. A line
/// that cannot be written is lost.
void log_lost_error(const char* what, const std::exception& error) noexcept;

}  // namespace qorv::binding
