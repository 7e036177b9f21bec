#include "binding/log.h"

#include "binding/host_functions.h"

namespace qorv::binding {
namespace {

constexpr char module_name[] = "Zentrix";

}  // namespace

log_line::~log_line()
{
    try {
        WriteOutputWindow(module_name, static_cast<std::uint32_t>(level_), text_.str() + "\n");
    } catch (...) {  // there is no other place to tell it
    }
}

void log_lost_error(const char* what, const std::exception& error) noexcept
{
    try {
        log_line{level::warning} << what << " ended with an error: " << error.what();
    } catch (...) {  // no memory for the line
    }
}

}  // namespace qorv::binding
