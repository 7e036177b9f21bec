#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace support {

/// A new folder, removed with its contents.
class scratch_folder
{
  public:
    scratch_folder()
        : path_{std::filesystem::temp_directory_path() / ("zentrix-test-" + std::to_string(std::random_device{}()))}
    {
        std::filesystem::create_directories(path_);
    }
    ~scratch_folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    scratch_folder(const scratch_folder&) = delete;
    scratch_folder& operator=(const scratch_folder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// Names of its entries, sorted.
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator{path_})
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    void write(const std::string& name, const std::string& contents) const
    {
        std::ofstream{path_ / name, std::ios::binary} << contents;
    }
    std::string read(const std::string& name) const
    {
        std::ifstream stream{path_ / name, std::ios::binary};
        return {std::istreambuf_iterator<char>{stream}, {}};
    }

  private:
    std::filesystem::path path_;
};

}  // namespace support
