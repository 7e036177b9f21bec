#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "contract/host_link.h"

namespace Gatan::Win32 {

/// Base of every plug-in object: the operations that the exported entry points call, in the order of the host's calls.
/// By default they do nothing, and `RequestClose` allows closing.
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

/// A plug-in that offers script functions and floating windows. It keeps track of what it registered with the host and
/// withdraws it in `tear_down`.
class PlugInMain : public Win32::PlugInMain
{
  public:
    PlugInMain();
    ~PlugInMain() override;

    /// Makes `prototype` callable from scripts.
    /// Throws  gatan_exception when there is no host; with the host's text when the host refuses
    void AddFunction(const std::string& prototype, host_native native);

    /// Registers a floating window under its title.
    /// Throws  as AddFunction
    void AddFloatingWindow(const host_floating_window& window);

    /// The registered prototypes in the order of registration.
    const std::vector<std::string>& functions() const noexcept { return functions_; }

    /// Adds the object to the framework's list of plug-ins, unless it is listed, and marks it started.
    void enlist();
    bool enlisted() const noexcept;
    bool started() const noexcept { return started_; }

    /// Withdraws windows and functions from the host and leaves the list of plug-ins. May be called repeatedly.
    void tear_down() noexcept;

  private:
    std::vector<std::string> functions_;
    std::vector<std::string> window_titles_;
    bool started_ = false;
};

/// The text of a host throwable, which is released; `fallback` when there is none.
std::string take_error_text(host_link* link, host_object* throwable, const char* fallback);

}  // namespace Gatan::PlugIn
