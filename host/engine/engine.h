#pragma once

#include "host/engine/faults.h"
#include "host/engine/function_table.h"
#include "host/objects/image.h"
#include "host/objects/journal.h"
#include "host/objects/script_object.h"
#include "host/objects/tag_group.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace zentrix::host {

/// What kind of host an engine plays.
struct engine_options
{
    /// Major in the top byte, minor in the next, patch in the low 16 bits; nothing: the host tells no version.
    std::optional<std::uint32_t> version = 0x03320000;
    bool has_error_manager = true;
    /// False: "void WriteOutputWindow( ... )" does not exist.
    bool has_output_window = true;
    /// Further host prototypes, by their exact text, that this host does not have.
    std::vector<std::string> withheld = {};
    /// Answers DoesFileExist; the file system does when empty.
    std::function<bool(const std::string& path)> file_exists = {};
    /// Reads the picture file for OpenImage; fails with script_error. When empty, OpenImage fails.
    std::function<image_ref(const std::string& path)> open_image = {};
    /// Compare the pixels before and after each read lock, and record it when they changed. Costs two passes.
    bool check_read_locks = false;
    listeners listening = {};
};

/// A floating window that the library registered. `window` is the open window (an HWND), null while there is none.
struct floating_window
{
    std::string title;
    void* module;
    void* context;
    void*(HOST_CALL* create)(void* context, void* parent);
    void(HOST_CALL* destroy)(void* context, void* window);
    void* window = nullptr;
};

/// What the library still held when asked. Each line names the object and its count.
struct held_report
{
    std::vector<std::string> references;  ///< host objects
    std::vector<std::string> locks;       ///< image locks
    std::vector<std::string> others;      ///< link references, registered functions, windows and custom tools
    std::vector<std::string> violations;  ///< breaches of the contract so far

    bool clean() const { return references.empty() && locks.empty() && others.empty() && violations.empty(); }
    /// All lines, each ended; empty when clean.
    std::string text() const;
};

/// The stand-alone host: all host functions, the library's script functions, and the contract's table in front of them.
/// The thread that makes the engine is the main thread. An engine outlives the library that is linked to it (library.h
/// does the linking). Images, tag groups and script objects need no engine to be made.
///
///     engine host;
///     library zentrix{host, "Zentrix64.so"};
///     auto result = host.call("ZXMedianFilter", {wave, std::int64_t{2}, script_value{}, std::int64_t{1}});
class engine
{
  public:
    explicit engine(engine_options options = {});
    ~engine();
    engine(const engine&) = delete;
    engine& operator=(const engine&) = delete;

    /// What DMPlugIn_Link_2 gets.
    host_link* link() noexcept;

    /// Calls a script function by name: finds the overload, converts the arguments, calls, converts back. Output
    /// parameters are cells (make_cell); they keep their values when the call fails.
    /// Throws  script_error with the text that a script's user would read
    script_value call(std::string_view name, std::span<const script_value> arguments);
    script_value call(std::string_view name, std::initializer_list<script_value> arguments);

    const engine_options& options() const noexcept;
    function_table& functions() noexcept;
    fault_plan& faults() noexcept;
    journal& records() noexcept;
    /// True on the thread that made the engine.
    bool on_main_thread() const noexcept;

    /// The registered floating windows in order. A program opens one with `open`: creates its window as a child of
    /// `parent` (hidden), or returns the one that is open; null when the library could not. Closing destroys it.
    const std::vector<floating_window>& windows() const noexcept;
    void* open(std::string_view title, void* parent);
    void close(std::string_view title);

    /// What the library holds now. After its shut-down and DMPlugIn_Link_2(null) this has to be clean; before, it has the
    /// host functions that the library keeps for their next call, and what it registered.
    held_report report() const;
    /// Drops what the library holds, so that one engine can go on after a report.
    void forget_held();

    /// The engine's inside, for the sources in this folder.
    struct inside;
    inside& in() noexcept { return *inside_; }

  private:
    std::unique_ptr<inside> inside_;
};

}  // namespace zentrix::host
