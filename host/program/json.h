#pragma once

#include <iostream>
#include <nlohmann/json.hpp>

namespace zentrix::program {

/// Members keep their order.
using json = nlohmann::ordered_json;

/// Prints one line. Infinities and not-a-number become null; bytes that are not UTF-8 become U+FFFD.
inline void print(const json& value)
{
    std::cout << value.dump(-1, ' ', false, json::error_handler_t::replace) << '\n';
}

}  // namespace zentrix::program
