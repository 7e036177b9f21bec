#include "host/program/help/version.h"

#include <fftw3.h>
#include <nlopt.h>
#include <tiffio.h>
#include <zlib.h>
#include <CLI/Version.hpp>
#include <exception>

#include "host/engine/library_search.h"

namespace zentrix::program {

namespace {

#ifdef _WIN32
constexpr char system_name[] = "Windows x86-64";
#else
constexpr char system_name[] = "Linux x86-64";
#endif
#ifdef __clang__
constexpr char compiler[] = "Clang " __clang_version__;
#else
constexpr char compiler[] = "GCC " __VERSION__;
#endif

/// "fftw-3.3.10-sse2-avx" -> "3.3.10-sse2-avx"; "LIBTIFF, Version 4.5.0\nCopyright ..." -> "4.5.0".
std::string number_in(const std::string& text)
{
    const auto first = text.find_first_of("0123456789");
    return first == std::string::npos ? text : text.substr(first, text.find_first_of(" \n", first) - first);
}

std::string json_version()
{
    return std::to_string(NLOHMANN_JSON_VERSION_MAJOR) + "." + std::to_string(NLOHMANN_JSON_VERSION_MINOR) + "." +
           std::to_string(NLOHMANN_JSON_VERSION_PATCH);
}

std::string nlopt_version_text()
{
    int major = 0, minor = 0, bugfix = 0;
    nlopt_version(&major, &minor, &bugfix);
    return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(bugfix);
}

json library_path(const std::string& given)
{
    if (!given.empty()) return given;
    try {
        return host::find_library_file();
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace

json version_facts(const std::string& library_file)
{
    return {{"version", ZENTRIX_VERSION},
            {"system", system_name},
            {"compiler", compiler},
            {"library", library_path(library_file)},
            {"libraries",
             {{"FFTW", number_in(fftwf_version)},
              {"zlib", zlibVersion()},
              {"LibTIFF", number_in(TIFFGetVersion())},
              {"NLopt", nlopt_version_text()},
              {"CLI11", CLI11_VERSION},
              {"JSON for Modern C++", json_version()}}}};
}

std::string version_text(const json& facts)
{
    std::string text = "zentrix " + facts["version"].get<std::string>() + ", " + facts["system"].get<std::string>() +
                       "\ncompiler: " + facts["compiler"].get<std::string>() + "\nlibrary: " +
                       (facts["library"].is_null() ? "not found" : facts["library"].get<std::string>()) + "\nwith: ";
    std::string with;
    for (const auto& [name, version] : facts["libraries"].items())
        with += (with.empty() ? "" : ", ") + name + " " + version.get<std::string>();
    return text + with + '\n';
}

}  // namespace zentrix::program
