#pragma once

#include <string>

namespace qorv::dm {

/// Handle of this library's module (an HINSTANCE on Windows); null until CZXApp::InitInstance has stored it.
void* module_handle() noexcept;
void set_module_handle(void* handle) noexcept;

/// Full path of a module's file, UTF-8; empty when the system cannot supply it.
std::string module_path(void* handle);

/// `path` with its extension, if any, replaced by `extension`, which includes the dot. A dot in a folder's name does
/// not start an extension.
std::string with_extension(const std::string& path, const std::string& extension);

}  // namespace qorv::dm
