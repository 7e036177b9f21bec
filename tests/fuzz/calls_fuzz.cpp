// Script functions of the loaded library, called with random arguments. A call that fails changes nothing; one that
// succeeds has the same results with and without vector instructions. Nothing is written outside images, nothing stays
// locked or held, and the contract is kept, also when a host call fails. The first byte chooses the prototype, the
// second one the host call that fails.
#include <algorithm>
#include <filesystem>
#include <memory>

#include "host/engine/engine.h"
#include "host/engine/library.h"
#include "host/files/file_error.h"
#include "host/setup/host_options.h"
#include "tests/fuzz/any_arguments.h"
#include "tests/support/scratch.h"

using namespace zentrix::host;

namespace {

/// The host with the library, and a folder for files.
class running_host
{
  public:
    running_host() : engine_{options()}, library_{engine_, ZENTRIX_LIBRARY_FILE}
    {
        std::filesystem::current_path(folder_ / "");
        folder_.write("raw.bin", std::string(64, '\1'));
        setenv("HOME", (folder_ / "").c_str(), 1);
        for (const std::string& text : engine_.functions().prototypes(origin::library))
            if (!is_excluded(text)) callees_.push_back(engine_.functions().find(text));
    }
    ~running_host()
    {
        library_.close();
        if (const std::string held = engine_.report().text(); !held.empty()) fuzz::fail("still held: " + held);
    }

    const std::vector<function_ref>& callees() const { return callees_; }
    /// Makes the k-th host call of the next script call fail; 0: none.
    void plan_failure(std::uint64_t k)
    {
        engine_.faults().clear();
        if (k > 0) engine_.faults().plan({fault_point::call, k});
    }
    /// Ends the process when the library holds anything but the host functions that it keeps.
    void check_held()
    {
        for (const std::string& line : engine_.report().references)
            if (!line.starts_with("function")) fuzz::fail("still held: " + line);
    }
    void use_simd(bool on) { engine_.call("ZXSetUseSIMD", {std::int64_t{on}}); }
    /// Ends the process for a breach of the contract in the last call.
    /// overlap  the source changes when a view that overlaps it is written
    void check_contract(bool overlap)
    {
        for (const std::string& breach : engine_.records().violations())
            if (!overlap || breach.find("but the pixels changed") == std::string::npos) fuzz::fail(breach);
        engine_.records().clear();
    }

  private:
    static engine_options options()
    {
        engine_options made = host_options(ZENTRIX_LIBRARY_FILE, {});
        made.check_read_locks = true;
        return made;
    }
    /// Functions that start programs, and the one whose arguments the library keeps.
    static bool is_excluded(const std::string& prototype)
    {
        return prototype.find("Exec") != std::string::npos || prototype.find("SetZentrixHandler") != std::string::npos;
    }

    support::scratch_folder folder_;
    engine engine_;
    library library_;
    std::vector<function_ref> callees_;
};

running_host& host()
{
    static running_host made;
    return made;
}

/// The result of a call, or the text of its error.
struct outcome
{
    std::string bytes;
    bool failed = false;
};

outcome call(function& callee, const fuzz::any_arguments& arguments)
{
    try {
        return {fuzz::bytes_of(call_converted(callee, arguments.values())), false};
    } catch (const script_error& error) {
        return {error.what(), true};
    } catch (const file_error& error) {  // of OpenImage
        return {error.what(), true};
    }
}

/// Functions whose vector forms are allowed to differ from the plain ones in the last bits; and the switch itself.
bool may_depend_on_simd(const std::string& name)
{
    constexpr std::string_view names[] = {"ZXAbs", "ZXSurvey", "ZXSetUseSIMD"};
    return std::ranges::find(names, name) != std::end(names);
}

}  // namespace

std::vector<std::string> fuzz::seeds()
{
    fuzz::generator random{1};
    std::vector<std::string> made;
    for (std::size_t i = 0; i < 8 * host().callees().size(); ++i) {
        std::string bytes(160, '\0');
        for (char& one : bytes) one = static_cast<char>(random());
        bytes[0] = static_cast<char>(i % host().callees().size());
        made.push_back(bytes);
    }
    return made;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::input from{data, size};
    function& callee = *from.pick(host().callees());
    const std::string& name = callee.signature().name;
    const std::size_t fault = from.below(256);
    const std::uint64_t failing = fault < 224 ? 0 : fault - 223;  // in one of eight calls
    fuzz::input again = from;

    host().use_simd(true);
    const fuzz::any_arguments arguments{from, callee.signature()};
    const std::string before = arguments.state();
    host().plan_failure(failing);
    const outcome first = call(callee, arguments);
    host().plan_failure(0);
    arguments.check_guards();
    host().check_contract(arguments.overlap());
    static unsigned calls = 0;
    if (++calls % 64 == 0) host().check_held();
    if (failing > 0) return 0;  // a late failure, of the notice that pixels have changed, leaves them changed
    if (first.failed && arguments.state() != before)
        fuzz::fail(name + " failed and changed its arguments: " + first.bytes);

    if (may_depend_on_simd(name)) return 0;
    host().use_simd(false);
    const fuzz::any_arguments others{again, callee.signature()};
    const outcome second = call(callee, others);
    others.check_guards();
    host().check_contract(others.overlap());
    if (first.bytes != second.bytes) fuzz::fail(name + " gives another result without vector instructions");
    if (arguments.value_bytes() != others.value_bytes())
        fuzz::fail(name + " writes other pixels without vector instructions");
    return 0;
}
