#include "host/objects/prototype.h"

#include "host/objects/value.h"

#include <stdexcept>

namespace zentrix::host {

prototype parse_prototype(std::string_view text)
try {
    return contract::parse_prototype(text);
} catch (const std::invalid_argument& error) {
    throw script_error{error.what()};
}

}  // namespace zentrix::host
