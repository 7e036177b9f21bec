// Runs a harness without libFuzzer: NAME_fuzz [--runs=N] [--seed=N] [--curve=N] [--write-seeds=FOLDER] [FILE...]
// First the seeds, or the files if there are any, then N inputs that are random changes of them. The same options give
// the same inputs. --curve prints what the process uses after every N of them. When a check or a sanitizer ends the
// process, the input is left in the file "crash-input" of the folder where the harness was started.
#ifndef _WIN32
#include <malloc.h>
#endif

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/write_seeds.h"

namespace {

struct request
{
    std::size_t runs = 1000, curve = 0;
    std::uint32_t seed = 1;
    std::vector<std::string> files;
};

std::string current;  // what runs now
const std::filesystem::path crash_file = std::filesystem::absolute("crash-input");

void keep_input() { std::ofstream{crash_file, std::ios::binary} << current; }
#ifdef __SANITIZE_ADDRESS__
extern "C" void __sanitizer_set_death_callback(void (*called)());
#endif

void run(const std::string& input)
{
    current = input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(current.data()), current.size());
}

void change_once(std::string& text, const std::vector<std::string>& others, fuzz::generator& random)
{
    constexpr std::uint64_t edges[] = {0,      1,      0x7f,       0x80,       0xff,      0x7fff,
                                       0x8000, 0xffff, 0x7fffffff, 0x80000000, 0xffffffff};
    const auto any = [&](std::size_t limit) { return limit == 0 ? 0 : random() % limit; };
    const std::size_t at = any(text.size());
    switch (random() % 7) {
        case 0:
            if (!text.empty()) text[at] = static_cast<char>(text[at] ^ (1 << any(8)));
            break;
        case 1:
            if (!text.empty()) text[at] = static_cast<char>(random());
            break;
        case 2: text.insert(at, 1 + any(4), static_cast<char>(random())); break;
        case 3: text.erase(at, 1 + any(8)); break;
        case 4: {  // a number, of either byte order
            const std::size_t bytes = std::size_t{1} << any(4);
            std::uint64_t value = edges[any(std::size(edges))] + any(3) - 1;
            std::array<char, 8> word;
            std::memcpy(word.data(), &value, word.size());
            if (random() % 2) std::reverse(word.begin(), word.begin() + static_cast<std::ptrdiff_t>(bytes));
            if (at + bytes <= text.size()) text.replace(at, bytes, word.data(), bytes);
            break;
        }
        case 5: text.insert(at, text.substr(any(text.size()), 1 + any(32))); break;
        default: {  // a piece of another input
            const std::string& other = others[any(others.size())];
            if (!other.empty()) text.replace(at, any(32), other.substr(any(other.size()), 1 + any(64)));
        }
    }
}

constexpr std::size_t longest = 4096;

std::string changed(const std::vector<std::string>& from, fuzz::generator& random)
{
    std::string result = from[random() % from.size()];
    if (random() % 8 == 0) {
        result.resize(1 + random() % 128);
        std::generate(result.begin(), result.end(), [&] { return static_cast<char>(random()); });
    }
    for (std::size_t i = 1 + random() % 6; i > 0; --i) change_once(result, from, random);
    result.resize(std::min(result.size(), longest));
    return result;
}

[[maybe_unused]] std::size_t entries_of(const char* folder)
{
    const std::filesystem::directory_iterator all{folder};
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// Memory in use and of the process, open files, threads.
void print_usage([[maybe_unused]] std::size_t executions)
{
#ifndef _WIN32
    std::size_t pages = 0, ignored = 0;
    std::ifstream{"/proc/self/statm"} >> ignored >> pages;
    std::printf("%10zu executions  %8.2f MiB allocated  %7.1f MiB resident  %3zu files  %2zu threads\n", executions,
                static_cast<double>(mallinfo2().uordblks) / 1048576, static_cast<double>(pages) / 256,
                entries_of("/proc/self/fd"), entries_of("/proc/self/task"));
    std::fflush(stdout);
#endif
}

request read_request(int argc, char** argv)
{
    request made;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto value = [&](std::string_view name) {
            return word.starts_with(name) ? std::strtoull(word.c_str() + name.size(), nullptr, 10) : 0;
        };
        if (word.starts_with("--runs="))
            made.runs = value("--runs=");
        else if (word.starts_with("--seed="))
            made.seed = static_cast<std::uint32_t>(value("--seed="));
        else if (word.starts_with("--curve="))
            made.curve = value("--curve=");
        else
            made.files.push_back(word);
    }
    return made;
}

}  // namespace

int main(int argc, char** argv)
{
    if (fuzz::write_seeds(argc, argv)) return 0;
    const request asked = read_request(argc, argv);
    std::signal(SIGABRT, [](int) { keep_input(); });
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_set_death_callback(keep_input);
#endif
    std::vector<std::string> start;
    for (const std::string& file : asked.files) {
        std::ifstream stream{file, std::ios::binary};
        start.emplace_back(std::istreambuf_iterator<char>{stream}, std::istreambuf_iterator<char>{});
    }
    if (start.empty()) start = fuzz::seeds();
    const auto begin = std::chrono::steady_clock::now();
    for (const std::string& input : start) run(input);
    fuzz::generator random{asked.seed};
    if (asked.files.empty())
        for (std::size_t i = 0; i < asked.runs; ++i) {
            if (asked.curve > 0 && i % asked.curve == 0) print_usage(i);
            run(changed(start, random));
        }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    std::printf("%zu executions in %.1f s\n", start.size() + (asked.files.empty() ? asked.runs : 0), seconds);
}
