// Script functions of the loaded library, called with random arguments. A call that fails changes nothing; one that
// succeeds has the same results with and without vector instructions. Nothing is written outside images, nothing stays
// locked, and the contract is kept. The first byte chooses the prototype.
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
    std::mt19937 random{1};
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
    fuzz::input from{data, size}, again{data, size};
    function& callee = *fuzz::input{data, size}.pick(host().callees());
    const std::string& name = callee.signature().name;
    from.pick(host().callees());
    again.pick(host().callees());

    host().use_simd(true);
    const fuzz::any_arguments arguments{from, callee.signature()};
    const std::string before = arguments.state();
    const outcome first = call(callee, arguments);
    arguments.check_guards();
    if (first.failed && arguments.state() != before)
        fuzz::fail(name + " failed and changed its arguments: " + first.bytes);
    host().check_contract(arguments.overlap());

    if (may_depend_on_simd(name)) return 0;
    host().use_simd(false);
    const fuzz::any_arguments others{again, callee.signature()};
    const outcome second = call(callee, others);
    others.check_guards();
    if (first.bytes != second.bytes) fuzz::fail(name + " gives another result without vector instructions");
    const auto images_of = [](const fuzz::any_arguments& all) {
        std::string bytes;
        for (const script_value& value : all.values()) bytes += fuzz::bytes_of(value);
        return bytes;
    };
    if (images_of(arguments) != images_of(others))
        fuzz::fail(name + " writes other pixels without vector instructions");
    host().check_contract(arguments.overlap());
    return 0;
}
