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

struct engine_state;

/// The features of the host that an engine represents.
struct engine_options
{
    /// Major version in the top byte, minor in the next, patch in the low 16 bits. Empty: the host reports no version.
    std::optional<std::uint32_t> version = 0x03320000;
    bool has_error_manager = true;
    /// False: "void WriteOutputWindow( ... )" does not exist.
    bool has_output_window = true;
    /// Exact texts of further host prototypes that this host does not have.
    std::vector<std::string> withheld = {};
    /// Implements DoesFileExist. Empty: the file system is asked.
    std::function<bool(const std::string& path)> file_exists = {};
    /// Implements OpenImage; fails with script_error. Empty: OpenImage always fails.
    std::function<image_ref(const std::string& path)> open_image = {};
    /// Answers whether the user has asked to stop the running call; called on the main thread now and then during long
    /// calls. Empty: never.
    std::function<bool()> interrupted = {};
    /// Compares the pixels before and after each read lock, and records a violation when they differ. Costs two passes.
    bool check_read_locks = false;
    listeners listening = {};
};

/// A floating window that the library registered.
struct floating_window
{
    std::string title;
    void* module;
    void* context;
    void*(HOST_CALL* create)(void* context, void* parent);
    void(HOST_CALL* destroy)(void* context, void* window);
    void* window = nullptr;  ///< the open window (an HWND); null while closed
};

/// What the library holds. Each line names an object and its count.
struct held_report
{
    std::vector<std::string> references;  ///< host objects
    std::vector<std::string> locks;       ///< image locks
    std::vector<std::string> others;      ///< link references, registered functions, windows and custom tools
    std::vector<std::string> violations;  ///< breaches of the contract so far

    bool clean() const { return references.empty() && locks.empty() && others.empty() && violations.empty(); }
    /// All lines, each with a line end; empty when clean.
    std::string text() const;
};

/// The stand-alone host: the host functions, the script functions of the library, and the contract's table through
/// which the library reaches the host. The thread that constructs the engine is the main thread. The engine must
/// outlive the library that is linked to it (see library.h). Images, tag groups and script objects need no engine.
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

    /// The link to pass to DMPlugIn_Link_2.
    host_link* link() noexcept;

    /// Calls a script function: finds the overload, converts the arguments, calls it and converts the result. For the
    /// main thread; ZXWTFMulDLL for any thread, several at once, while the library is loaded.
    /// name       name of a function of the host or the library
    /// arguments  in prototype order; output parameters are cells (make_cell), which keep their values when the call
    ///            fails
    /// Throws     script_error with the text that the user of a script would read
    script_value call(std::string_view name, std::span<const script_value> arguments);
    script_value call(std::string_view name, std::initializer_list<script_value> arguments);

    const engine_options& options() const noexcept;
    function_table& functions() noexcept;
    fault_plan& faults() noexcept;
    journal& records() noexcept;
    /// True on the thread that made the engine, or adopted it.
    bool on_main_thread() const noexcept;
    /// Makes the calling thread the main thread. Only for a forked process, in which the former one does not exist.
    void adopt_main_thread() noexcept;

    /// The registered floating windows in the order of registration.
    const std::vector<floating_window>& windows() const noexcept;
    /// Creates a registered window, hidden, as a child of `parent`; returns the present window if it is open already.
    /// Returns null when the library could not create it.
    /// Throws  script_error when no window of that title is registered
    void* open(std::string_view title, void* parent);
    /// Destroys an open window; does nothing otherwise.
    void close(std::string_view title);

    /// What the library holds now. The report must be clean after the library's shut-down and DMPlugIn_Link_2(null).
    /// Before that it contains the registrations and the host functions that the library keeps for further calls.
    held_report report() const;
    /// Releases everything that the library holds, so that the engine can be used further.
    void forget_held();

    /// For the sources in this folder.
    engine_state& state() noexcept { return *state_; }

  private:
    std::unique_ptr<engine_state> state_;
};

}  // namespace zentrix::host
