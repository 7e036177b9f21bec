#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/batch/file_task.h"

namespace zentrix::host {

/// Where one kind of result goes.
struct destination
{
    std::string to;      ///< a file, or a folder: it exists, or the name ends with a separator; empty: not wanted
    std::string ending;  ///< of files in a folder, ".png"; empty: that of the input if `can_be_written`, else ".npy"
    std::string suffix;  ///< of files in a folder, after the input's name: "_c" makes a_c.npy of a.npy
    std::function<bool(const std::string& ending)> can_be_written;
};

/// Whether a destination is a folder, so that it takes the results of many files.
bool is_folder(const std::string& to);

/// One task for each input; its outputs are in the order of the destinations. Nothing is created.
/// Throws  file_error when several inputs would go to one file, to files whose names differ in the ending only (which
///         share a record) or in capitals only (which some file systems do not distinguish), and when an output is an
///         input
std::vector<file_task> plan_outputs(const std::vector<std::string>& inputs,
                                    const std::vector<destination>& destinations);

/// For commands that write single files: checks that no output is an input, and that no two outputs are one file. Empty
/// names are left out.
/// Throws  file_error
void require_own_names(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs);

/// For commands that write single files: checks that the folder of an output exists, before work that would be lost.
/// An empty name is left out. Throws  file_error
void require_folder(const std::string& output);

/// Checks that each file could be created or replaced now, before anything is written. Empty names are left out. Leaves
/// nothing. Throws  file_error as pending_file does
void require_places(const std::vector<std::string>& outputs);

/// Creates the folders of the destinations where they do not exist. Throws  file_error
void create_folders(const std::vector<destination>& destinations);

}  // namespace zentrix::host
