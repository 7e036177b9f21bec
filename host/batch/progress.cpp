#include "host/batch/progress.h"

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <string_view>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace zentrix::host {

namespace {

#ifdef _WIN32
bool is_terminal(int stream) { return _isatty(stream) != 0; }
#else
bool is_terminal(int stream) { return isatty(stream) == 1; }
#endif

/// "40 s", "12 min", "3 h"
std::string duration_text(double seconds)
{
    const auto in = [&](double unit) { return std::to_string(std::lround(seconds / unit)); };
    return seconds < 100 ? in(1) + " s" : seconds < 6000 ? in(60) + " min" : in(3600) + " h";
}

/// "12", "0.25"
std::string rate_text(double rate)
{
    if (rate >= 10) return std::to_string(std::lround(rate));
    std::string text = std::to_string(rate);
    return text.substr(0, text.find_first_of(".,") + 3);
}

}  // namespace

bool is_terminal_for_bar()
{
    const char* const kind = std::getenv("TERM");
    return is_terminal(2) && (kind == nullptr || std::string_view{kind} != "dumb");
}

bool output_is_terminal() { return is_terminal(1); }

std::string bar_text(std::size_t done, std::size_t files, std::size_t failed, double seconds)
{
    constexpr std::size_t width = 20;
    const std::size_t filled = files == 0 ? width : done * width / files;
    std::string text = "[" + std::string(filled, '#') + std::string(width - filled, '-') + "] " + std::to_string(done) +
                       " of " + std::to_string(files) + " files";
    if (failed > 0) text += ", " + std::to_string(failed) + " failed";
    if (done > 0 && seconds > 0) {
        const double rate = static_cast<double>(done) / seconds;
        text += ", " + rate_text(rate) + " per second";
        if (done < files) text += ", " + duration_text(static_cast<double>(files - done) / rate) + " left";
    }
    return text;
}

progress::progress(std::size_t files, bool draws_bar)
    : files_{files}, draws_{draws_bar}, start_{std::chrono::steady_clock::now()}, last_drawn_{start_}
{
    draw();
}

progress::~progress() { clear(); }

std::chrono::duration<double> progress::elapsed() const { return std::chrono::steady_clock::now() - start_; }

void progress::count(bool failed)
{
    ++done_;
    if (failed) ++failed_;
    if (std::chrono::steady_clock::now() - last_drawn_ > std::chrono::milliseconds{100} || done_ == files_) draw();
}

void progress::print_above(const std::string& lines)
{
    if (lines.empty()) return;
    clear();
    std::cerr << lines << std::flush;
    draw();
}

void progress::print_output(const std::string& lines)
{
    if (draws_ && output_is_terminal()) clear();
    std::cout << lines << std::flush;
}

void progress::draw()
{
    if (!draws_) return;
    const std::string text = bar_text(done_, files_, failed_, elapsed().count());
    const std::size_t excess = drawn_ > text.size() ? drawn_ - text.size() : 0;
    std::cerr << '\r' << text << std::string(excess, ' ') << std::flush;
    drawn_ = text.size();
    last_drawn_ = std::chrono::steady_clock::now();
}

void progress::clear()
{
    if (drawn_ > 0) std::cerr << '\r' << std::string(drawn_, ' ') << '\r' << std::flush;
    drawn_ = 0;
}

}  // namespace zentrix::host
