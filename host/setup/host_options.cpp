#include "host/setup/host_options.h"

#include <filesystem>

#include "host/files/image_file.h"
#include "host/text/system_path.h"

namespace zentrix::host {

namespace fs = std::filesystem;

namespace {

fs::path folder_of(const fs::path& file) { return file.has_parent_path() ? file.parent_path() : fs::path{"."}; }

/// With symbolic links followed, as the library sees its own file.
fs::path resolved(const fs::path& file)
{
    std::error_code failed;
    const fs::path path = fs::weakly_canonical(file, failed);
    return failed ? file : path;
}

bool is_companion(const fs::path& path, const fs::path& library)
{
    std::error_code ignored;
    return path.extension() == ".gtk" && path.stem() == library.stem() &&
           fs::equivalent(folder_of(path), folder_of(library), ignored);
}

}  // namespace

engine_options host_options(const std::string& library_file, listeners listening)
{
    engine_options options;
    options.file_exists = [library = resolved(system_path(library_file))](const std::string& text) {
        // Without its .gtk package, which brings a handler, the library shows a dialog. We provide a handler ourselves.
        const fs::path path = system_path(text);
        std::error_code ignored;
        return is_companion(path, library) || fs::exists(path, ignored);
    };
    options.open_image = [](const std::string& path) { return read_image(system_path(path)); };
    options.listening = std::move(listening);
    return options;
}

}  // namespace zentrix::host
