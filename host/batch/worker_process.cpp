#include "host/batch/worker_process.h"

namespace zentrix::host {

std::optional<std::string> worker_process::receive()
{
    std::size_t end = received_.find('\n');
    while (end == std::string::npos) {
        const std::size_t searched = received_.size();
        if (!read_more()) return std::nullopt;
        end = received_.find('\n', searched);
    }
    std::string line = received_.substr(0, end);
    received_.erase(0, end + 1);
    return line;
}

}  // namespace zentrix::host
