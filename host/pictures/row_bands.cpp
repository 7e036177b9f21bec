#include "host/pictures/row_bands.h"

#include <algorithm>
#include <cstdint>
#include <future>
#include <system_error>
#include <thread>
#include <vector>

namespace zentrix::host {

void in_row_bands(int rows, int least, const std::function<void(int first, int end)>& work)
{
    const int processors = static_cast<int>(std::thread::hardware_concurrency());
    const int bands = std::max(1, std::min(processors, rows / std::max(least, 1)));
    const auto start_of = [&](int band) { return static_cast<int>(std::int64_t{rows} * band / bands); };
    std::vector<std::future<void>> others;  // its destructor waits, so that `work` and its data outlive the threads
    others.reserve(static_cast<std::size_t>(bands));
    int left = bands;  // the first ones, not yet started
    try {
        for (; left > 1; --left)
            others.push_back(std::async(std::launch::async, std::cref(work), start_of(left - 1), start_of(left)));
    } catch (const std::system_error&) {  // the system starts no more threads
    }
    work(0, start_of(left));
    for (auto& other : others) other.get();
}

}  // namespace zentrix::host
