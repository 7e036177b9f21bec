#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "host/text/system_path.h"
#include "tests/support/scratch.h"

namespace support {

/// The path of a built file. Windows programs under Wine see the root folder of the machine as drive Z.
inline std::filesystem::path built(const std::string& file)
{
#ifdef _WIN32
    if (file.front() == '/') return std::filesystem::path{"Z:" + file}.make_preferred();
#endif
    return file;
}

/// Exit code and output of a program.
struct outcome
{
    int code = -1;
    std::string out, err;

    /// "0 output", or "1 error" after a failure.
    std::string text() const { return std::to_string(code) + " " + (code == 0 ? out + err : err); }
};

inline std::vector<std::string> joined(std::vector<std::string> words, const std::vector<std::string>& more)
{
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// Runs programs in a scratch folder, so that files need no path.
class workbench
{
  public:
    outcome run(const std::filesystem::path& program, const std::vector<std::string>& arguments) const
    {
        std::string command = change_folder + ("\"" + (folder_ / "").string() + "\" && ") + quoted(program.string());
        for (const auto& argument : arguments) command += " " + quoted(argument);
        // Wine may still have the files of the run before open.
        const std::string out = "out" + std::to_string(++runs_), err = "err" + std::to_string(runs_);
        command += " >\"" + (texts_ / out).string() + "\" 2>\"" + (texts_ / err).string() + "\"";
        outcome result;
#ifdef _WIN32
        // The command processor drops the outer quotes. Wine sometimes fails to start it (-1) or its program (9009).
        for (int attempt = 0; attempt < 3 && (result.code == -1 || result.code == 9009); ++attempt)
            result.code = _wsystem(zentrix::host::system_path("\"" + command + "\"").wstring().c_str());
#else
        const int status = std::system(command.c_str());
        result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
        result.out = without_returns(texts_.read(out));
        result.err = without_returns(texts_.read(err));
        return result;
    }
    outcome zentrix(const std::vector<std::string>& arguments) const { return run(built(ZENTRIX_PROGRAM), arguments); }
    /// The same with arguments that are separated by blanks; "" is an empty one.
    outcome zentrix(const std::string& arguments) const
    {
        std::istringstream text{arguments};
        std::vector<std::string> words{std::istream_iterator<std::string>{text}, {}};
        std::replace(words.begin(), words.end(), std::string{"\"\""}, std::string{});
        return zentrix(words);
    }

    const scratch_folder& folder() const { return folder_; }
    std::filesystem::path operator/(const std::string& name) const { return folder_ / name; }

  private:
#ifdef _WIN32
    static constexpr const char* change_folder = "cd /d ";
#else
    static constexpr const char* change_folder = "cd ";
#endif
    static std::string quoted(const std::string& word) { return "\"" + word + "\""; }
    static std::string without_returns(std::string text)
    {
        std::erase(text, '\r');
        return text;
    }

    scratch_folder folder_;
    scratch_folder texts_;
    mutable int runs_ = 0;
};

}  // namespace support
