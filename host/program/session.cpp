#include "host/program/session.h"

#include <filesystem>
#include <iostream>

#include "host/engine/library_search.h"

namespace zentrix::program {

namespace {

using namespace std::string_literals;

/// The library misses its companion package, a file beside it that brings the panel's handler, with a dialog at each
/// start. This program brings a handler of its own, so it vouches for the package.
bool exists_or_is_companion(const std::string& path)
{
    std::error_code ignored;
    return path.ends_with(".gtk") || std::filesystem::exists(path, ignored);
}

host::engine_options make_options()
{
    host::engine_options options;
    options.file_exists = exists_or_is_companion;
    options.listening.error = [](const host::error_record& error) { std::cerr << "zentrix: " + error.text + "\n"; };
    options.listening.output = [](const host::output_record& line) { std::cerr << line.text; };
    options.listening.dialog = [](const host::dialog_record& shown) { std::cerr << "zentrix: " + shown.text + "\n"; };
    return options;
}

}  // namespace

session::session(const global_options& options) : engine_{make_options()}
{
    const std::string file = options.library.empty() ? host::find_library_file() : options.library;
    library_ = std::make_unique<host::library>(engine_, file);
    if (!options.use_simd) engine_.call("ZXSetUseSIMD", {std::int64_t{0}});
}

session::~session()
{
    try {
        library_->close();
        if (const auto held = engine_.report(); !held.clean())
            std::cerr << "zentrix: the library did not clean up after itself:\n" + held.text();
    } catch (const std::exception& problem) {
        std::cerr << "zentrix: while closing the library: "s + problem.what() + "\n";
    }
}

}  // namespace zentrix::program
