#pragma once

#include <cstdint>
#include <iostream>
#include <string>

/// What a walk covered, in the tests' output.
namespace faults {

inline void report(const std::string& line) { std::cout << "[   WALK   ] " << line << std::endl; }
inline std::string count_of(std::uint64_t number, const char* what) { return std::to_string(number) + " " + what; }

}  // namespace faults
