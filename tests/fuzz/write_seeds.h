#pragma once

#include <filesystem>
#include <fstream>

#include "tests/fuzz/fuzz.h"

namespace fuzz {

/// Carries out the option --write-seeds=FOLDER: a file for each seed. False if it was not given.
inline bool write_seeds(int argc, char** argv)
{
    constexpr std::string_view option = "--write-seeds=";
    if (argc != 2 || !std::string_view{argv[1]}.starts_with(option)) return false;
    const std::filesystem::path folder = argv[1] + option.size();
    std::filesystem::create_directories(folder);
    std::size_t number = 0;
    for (const std::string& text : seeds())
        std::ofstream{folder / ("seed-" + std::to_string(number++)), std::ios::binary} << text;
    return true;
}

}  // namespace fuzz
