#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "contract/host_link.h"

namespace Gatan::Win32 {

/// Base of every plug-in object: the operations that the exported entry points call, in the order of the host's calls.
/// All of them do nothing but `RequestClose`, which agrees.
class PlugInMain
{
  public:
    PlugInMain() = default;
    PlugInMain(const PlugInMain&) = delete;
    PlugInMain& operator=(const PlugInMain&) = delete;

    virtual ~PlugInMain() = default;
    virtual void RegisterFloatingWindows() {}
    virtual void Start() {}
    virtual void Run() {}
    virtual std::int32_t RequestClose() { return 1; }  ///< non-zero: the host may close
    virtual void PrepareClose() {}
    virtual void Cleanup() {}
    virtual void End() {}
    virtual void AboutDialog() {}
};

}  // namespace Gatan::Win32

namespace Gatan::PlugIn {

/// A plug-in that offers script functions and floating windows. It remembers what it registered with the host and takes
/// it back in `tear_down`.
class PlugInMain : public Win32::PlugInMain
{
  public:
    PlugInMain();
    ~PlugInMain() override;

    /// Makes `prototype` callable from scripts.
    /// Throws  gatan_exception when there is no host, or with the host's text when it refuses
    void AddFunction(const std::string& prototype, host_native native);

    /// Registers a floating window under its title. Throws as AddFunction.
    void AddFloatingWindow(const host_floating_window& window);

    /// The prototypes in the order of their registration.
    const std::vector<std::string>& functions() const noexcept { return functions_; }

    /// Puts the object into the framework's list of plug-ins, unless it is there.
    void enlist();
    bool enlisted() const noexcept;
    void mark_started() noexcept { started_ = true; }
    bool started() const noexcept { return started_; }

    /// Takes functions and windows back from the host and leaves the list of plug-ins. May be called again.
    void tear_down() noexcept;

  private:
    std::vector<std::string> functions_;
    std::vector<std::string> window_titles_;
    bool started_ = false;
};

/// The text of a throwable of the host, which is released; `fallback` when there is none.
std::string take_error_text(host_link* link, host_object* throwable, const char* fallback);

}  // namespace Gatan::PlugIn
