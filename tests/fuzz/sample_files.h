#pragma once

#include <string>
#include <vector>

/// The bytes of small valid files of each format and kind, to start from.
namespace fuzz {

std::vector<std::string> sample_npy_files();
std::vector<std::string> sample_dm_files();
std::vector<std::string> sample_mrc_files();
std::vector<std::string> sample_tiff_files();
std::vector<std::string> sample_png_files();

}  // namespace fuzz
