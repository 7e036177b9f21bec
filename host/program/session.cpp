#include "host/program/session.h"

#include <iostream>

#include "host/engine/library_search.h"
#include "host/setup/host_options.h"

namespace zentrix::program {

namespace {

host::listeners print_to_standard_error()
{
    host::listeners listening;
    listening.error = [](const host::error_record& error) { std::cerr << "zentrix: " + error.text + "\n"; };
    listening.output = [](const host::output_record& line) { std::cerr << line.text; };
    listening.dialog = [](const host::dialog_record& shown) { std::cerr << "zentrix: " + shown.text + "\n"; };
    return listening;
}

}  // namespace

session::session(const global_options& options)
    : session{options.library.empty() ? host::find_library_file() : options.library, options.use_simd}
{}

session::session(const std::string& library_file, bool use_simd)
    : engine_{host::host_options(library_file, print_to_standard_error())},
      library_{std::make_unique<host::library>(engine_, library_file)}
{
    if (!use_simd) engine_.call("ZXSetUseSIMD", {std::int64_t{0}});
}

session::~session()
{
    try {
        library_->close();
        if (const auto held = engine_.report(); !held.clean())
            std::cerr << "zentrix: the library did not release everything:\n" + held.text();
    } catch (const std::exception& problem) {
        std::cerr << "zentrix: error while closing the library: " << problem.what() << "\n";
    }
}

}  // namespace zentrix::program
