#include "host/fft/line_transform.h"

#include <fftw3.h>

#ifndef _WIN32
#include <pthread.h>
#endif

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>
#include <new>

namespace zentrix::host {

namespace {

fftwf_complex* fftw_pixels(std::complex<float>* pixels) { return reinterpret_cast<fftwf_complex*>(pixels); }

/// FFTW's planner is not thread-safe, and its state is shared by the whole process.
std::mutex planner;

std::unique_lock<std::mutex> lock_planner()
{
#ifndef _WIN32
    static std::once_flag once;
    std::call_once(once, [] {
        fftwf_make_planner_thread_safe();  // against other users of FFTW in this process
        // A child that is forked while another thread plans would wait for that thread for ever.
        pthread_atfork([] { planner.lock(); }, [] { planner.unlock(); }, [] { planner.unlock(); });
    });
#endif
    return std::unique_lock{planner};
}

}  // namespace

void line_memory::release::operator()(pixel* pixels) const noexcept { fftwf_free(pixels); }

line_memory::line_memory(std::ptrdiff_t count, std::ptrdiff_t length)
    : stride_{(length + 7) / 8 * 8 + 8},  // whole cache lines; an odd number of them where a length is a power of two,
                                          // so that neighbours of equal index are in different cache sets
      pixels_{reinterpret_cast<pixel*>(
          fftwf_alloc_complex(static_cast<std::size_t>(count) * static_cast<std::size_t>(stride_)))}
{
    if (!pixels_) throw std::bad_alloc{};
}

std::shared_ptr<const line_transform> line_transform::of(std::ptrdiff_t length, fft_direction direction)
{
    // Rows and columns of one size in both directions; the last used is first. Never destroyed, because threads that
    // outlive `main` may still call this.
    static auto& kept = *new std::array<std::shared_ptr<const line_transform>, 4>;
    const auto is_wanted = [&](const auto& one) {
        return one && one->length_ == length && one->direction_ == direction;
    };
    {
        const auto locked = lock_planner();
        const auto found = std::find_if(kept.begin(), kept.end(), is_wanted);
        if (found != kept.end()) {
            std::rotate(kept.begin(), found, found + 1);
            return kept.front();
        }
    }
    auto made = std::make_shared<const line_transform>(length, direction);
    auto dropped = made;  // destroyed after the lock is released, because destruction locks again
    const auto locked = lock_planner();
    std::rotate(kept.begin(), kept.end() - 1, kept.end());
    kept.front().swap(dropped);
    return made;
}

line_transform::line_transform(std::ptrdiff_t length, fft_direction direction) : length_{length}, direction_{direction}
{
    require_memory_for_lines(length, 1);
    const line_memory lines{2, length};
    const auto locked = lock_planner();
    // Measuring plans takes longer than most jobs. An estimate also gives the same plan, and so the same bits, in every
    // run.
    plan_ = fftwf_plan_dft_1d(static_cast<int>(length), fftw_pixels(lines.line(0)), fftw_pixels(lines.line(1)),
                              direction == fft_direction::forward ? FFTW_FORWARD : FFTW_BACKWARD,
                              FFTW_ESTIMATE | FFTW_DESTROY_INPUT);
    if (plan_ == nullptr) throw std::bad_alloc{};
}

line_transform::~line_transform()
{
    const auto locked = lock_planner();
    fftwf_destroy_plan(static_cast<fftwf_plan>(plan_));
}

void line_transform::operator()(std::complex<float>* from, std::complex<float>* to) const noexcept
{
    fftwf_execute_dft(static_cast<fftwf_plan>(plan_), fftw_pixels(from), fftw_pixels(to));
}

void require_memory_for_lines([[maybe_unused]] std::ptrdiff_t longest, [[maybe_unused]] std::ptrdiff_t threads)
{
#ifndef __SANITIZE_ADDRESS__  // its allocator takes longer for this than the transform, and ends the process, too
    // Measured were up to 6.3 complex numbers per pixel of a line (for prime lengths), or 1.3 MB.
    // Other threads need a stack, too; 8 MiB is usual on Linux.
    const auto stacks = (std::size_t{8} << 20) * static_cast<std::size_t>(std::max<std::ptrdiff_t>(threads - 1, 0));
    const auto bytes =
        stacks + (std::size_t{4} << 20) +
        8 * sizeof(std::complex<float>) * static_cast<std::size_t>(longest) * static_cast<std::size_t>(threads);
    void* volatile const trial = std::malloc(bytes);  // volatile: the compiler may drop an unused allocation
    if (trial == nullptr) throw std::bad_alloc{};
    std::free(trial);
#endif
}

}  // namespace zentrix::host
