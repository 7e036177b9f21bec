// The command line, run in this process on small files in a folder of its own. Whatever the words are, it ends with one
// of its exit codes, says why if that is not 0, and leaves no unfinished file; a wrong command line changes no file.
// The first bytes of the input choose a command line and change some of its words; or the command line follows, one
// word in each line.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <sstream>

#include "host/files/image_file.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/scratch.h"

int program_main(int argc, char** argv);  // main.cpp, renamed by the build

namespace {

using words = std::vector<std::string>;

constexpr const char* command_lines[] = {
    "info wave.npy",
    "info wave.npy phase.tif --json",
    "correct wave.npy -o out.npy --kv 300 --pixel 0.02 --C1 -62 --A1 14@35 --C3 0.15 --png out.png --show phase",
    "aberrate wave.npy -o out.mrc --kv 300 --pixel 0.02 --C1 -62 --focus-spread 3 --tilt 0.5,1",
    "correct wave.npy -o out.npy --params p.json --scale-bar --colour-bar --png out.png --show wave",
    "correct wave.npy -o out.npy --kv 300 --pixel 0.02 --C1 -80:-40:10",
    "correct wave.npy -o out.npy --kv 300 --pixel 0.02 --C1 -80:-40:10 --png out.png",
    "correct wave.npy phase.npy -o results --kv 300 --pixel 0.02 --C1 -40 --continue",
    "ctf --kv 300 --pixel 0.02 --C1 -62 --C3 0.15 --focus-spread 3 -o ctf.png",
    "convert p.json --to polar --unit A --angle rad",
    "hologram phase.npy --reference phase.npy --pixel 0.5 -o out.npy",
    "hologram phase.npy --pixel 0.5 --unwrap -o out.npy --png out.png --sideband 3,4",
    "unwrap phase.npy -o out.npy --cuts cuts.png --mask phase.npy",
    "hologram phase.npy --pixel 0.5 --phase --degrees --window hann --size 32 -o out.npy",
    "estimate wave.npy --kv 300 --pixel 0.02 --free C1,A1 --start C1=-62 --range C1=-100:0 -o found.json",
    "correct wave.npy -o out.npy --kv 300 --pixel 0.02 --C1 -62 --png out.png --show phase --limits -1:1 --title t",
    "fft wave.npy -o out.npy --png out.png --show log",
    "ifft wave.npy -o out.npy",
    "functions",
    "call ZXMedianFilter phase.npy 2 null 1 -o out.npy",
    "call ZXSurvey phase.npy _ _ _ _",
    "call ZXMovingAverage2 phase.npy 2 _ _ -o imgDst1=out.npy -o imgDst2=out2.npy",
    "call ZXGetCenterOfMass phase.npy _=12 _=15 5 20 0",
    "call ZXOpenImage phase.npy 1 1 1 -1",
    "call ZXMaximumFilter {} 2 null --each *.npy -o filtered/",
    "call ZXSortNumberedName list:a10,a2",
    "help correct",
    "man",
    "completion bash",
    "--version --json",
    "correct --help"};

words words_of(const std::string& text)
{
    std::istringstream stream{text};
    return {std::istream_iterator<std::string>{stream}, {}};
}

/// What words of a command line are replaced by; the last one is empty.
const words vocabulary = [] {
    words all = words_of(
        "wave.npy phase.npy phase.tif p.json none.npy out.npy out.png out.tif out.mrc -o --kv --pixel --C1 --A1 "
        "--C3 --C5 --B2 --S3 --params --show --colour --png --focus-spread --tilt --json --simd off on phase "
        "modulus wave log real 300 0.02 -62 0 nan inf 1e300 -1e-300 14@35 14@ 1,2 , 1:2:0.5 2:1:1 1:1:0 null _ _=3 "
        "{} list:a,b -- - --help --each *.npy --continue --limits -1:1 --zoom 2 --crop 0:4,0:4 --mask --cuts "
        "--sideband --radius polar --unit nm A --angle rad --to cartesian \xc3\xa9 \xff --wavelength --vibration "
        "--convergence --scale-bar --colour-bar --overwrite --envelope --energy -h --plane --A2 --A3 --A4 --A5 "
        "--B4 --D4 --R5 --S5 --box --clockwise --degrees --despike --flank --free --full-size --limits-of --nan "
        "--object --output --phase --range --real --reference --region --size --start --suffix --threads --timing "
        "--title --unwrap --wave --window --zero 1:3 C1=-62 C1=-100:0 auto 5,5,20,20 -100:0 C10=-62nm");
    all.emplace_back();
    return all;
}();

/// The folder with the inputs, which a run may overwrite.
class folder_of_inputs
{
  public:
    folder_of_inputs()
    {
        const auto wave = zentrix::host::image::create("wave", HOST_ELEMENT_COMPLEX64, {{64u, 48u}});
        const auto phase = zentrix::host::image::create("phase", HOST_ELEMENT_FLOAT32, {{64u, 48u}});
        fuzz::generator random{1};
        for (std::size_t i = 0; i < 2 * wave->count(); ++i)
            static_cast<float*>(wave->data())[i] = fuzz::pixel<float>(random, fuzz::contents::ordinary);
        for (std::uint32_t y = 0; y < 48; ++y)  // fringes of a hologram
            for (std::uint32_t x = 0; x < 64; ++x) phase->at<float>(x, y) = 3 * std::cos(6.2831853f / 6 * float(x + y));
        write_image(folder_ / "wave.npy", *wave);
        write_image(folder_ / "phase.npy", *phase);
        write_image(folder_ / "phase.tif", *phase);
        folder_.write("p.json", R"({"kv": 300, "pixel": 0.02, "C1": -62, "A1": "14@35"})");
        for (const std::string& name : folder_.files()) contents_.emplace_back(name, folder_.read(name));
        std::filesystem::current_path(folder_ / "");
        setenv("ZENTRIX_LIBRARY", ZENTRIX_LIBRARY_FILE, 1);
    }
    /// Removes what a run has left and restores the inputs. Returns whether there was anything to do.
    bool tidy()
    {
        const std::vector<std::string> names = folder_.files();
        bool changed = names.size() != contents_.size();
        for (const std::string& name : names)
            if (name.find(".part") != std::string::npos) fuzz::fail("an unfinished file was left: " + name);
        for (const auto& [name, bytes] : contents_)
            changed |= !std::filesystem::is_regular_file(folder_ / name) || folder_.read(name) != bytes;
        if (!changed) return false;
        for (const std::string& name : names) std::filesystem::remove_all(folder_ / name);
        for (const auto& [name, bytes] : contents_) folder_.write(name, bytes);
        return true;
    }

  private:
    support::scratch_folder folder_;
    std::vector<std::pair<std::string, std::string>> contents_;
};

words lines_of(const std::string& text)
{
    std::istringstream stream{text};
    words all;
    for (std::string line; all.size() < 40 && std::getline(stream, line);) all.push_back(line);
    return all;
}

/// Keeps the words in this folder, in this process, and numbers small.
void restrain(words& all)
{
    std::erase_if(all, [](const std::string& word) {
        return word.find("xec") != std::string::npos || word.starts_with("--j") || word.starts_with("-j") ||
               word.starts_with("--lib") || word.find("..") != std::string::npos ||
               word.find('\0') != std::string::npos;
    });
    for (std::string& word : all) {
        std::size_t digits = 0;
        for (char& letter : word) {
            if (letter == '/' || letter == '~') letter = '_';
            digits = std::isdigit(static_cast<unsigned char>(letter)) ? digits + 1 : 0;
            if (digits > 3) letter = '.';
        }
    }
}

void change(words& all, fuzz::input& from)
{
    for (std::size_t i = from.below(4); i > 0; --i) {
        const std::size_t at = from.below(all.size() + 1);
        const std::string word = from.coin() ? from.pick(vocabulary) : from.pick(vocabulary) + "=2";
        switch (from.below(4)) {
            case 0: all.insert(all.begin() + static_cast<std::ptrdiff_t>(at), word); break;
            case 1:
                if (at < all.size()) all.erase(all.begin() + static_cast<std::ptrdiff_t>(at));
                break;
            case 2:
                if (at < all.size()) all[at] += from.pick(vocabulary);
                break;
            default:
                if (at < all.size()) all[at] = word;
        }
    }
}

}  // namespace

std::vector<std::string> fuzz::seeds()
{
    fuzz::generator random{1};
    std::vector<std::string> made;
    for (std::size_t i = 0; i < 4 * std::size(command_lines); ++i) {
        std::string input(12, '\0');
        for (char& one : input) one = static_cast<char>(random());
        input[0] = static_cast<char>(i);
        made.push_back(input + "info\nwave.npy\n--json");
    }
    return made;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static folder_of_inputs folder;
    fuzz::input from{data, std::min<std::size_t>(size, 12)}, rest{data, size};
    rest.text(12);
    const std::size_t which = from.below(std::size(command_lines) * 5 / 4);
    std::string text = which < std::size(command_lines) ? command_lines[which] : rest.rest();
    std::replace(text.begin(), text.end(), ' ', '\n');
    words all = lines_of(text);
    change(all, from);
    restrain(all);
    all.insert(all.begin(), "zentrix");
    std::vector<char*> arguments;
    for (std::string& word : all) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    std::ostringstream printed, errors;
    auto* const out = std::cout.rdbuf(printed.rdbuf());
    auto* const err = std::cerr.rdbuf(errors.rdbuf());
    const int code = program_main(static_cast<int>(all.size()), arguments.data());
    std::cout.rdbuf(out);
    std::cerr.rdbuf(err);
    if (code < 0 || code > 3) fuzz::fail("exit code " + std::to_string(code));
    if (code != 0 && errors.str().find("zentrix: ") == std::string::npos)
        fuzz::fail("exit code " + std::to_string(code) + " without a reason: " + errors.str());
    if (folder.tidy() && code == 2) fuzz::fail("a wrong command line changed files: " + errors.str());
    return 0;
}
