#pragma once

#include <complex>
#include <cstddef>
#include <memory>

namespace zentrix::host {

enum class fft_direction
{
    forward,
    backward
};

/// Memory with the alignment that FFTW needs for vector instructions.
class line_memory
{
  public:
    using pixel = std::complex<float>;

    /// Holds `count` lines of at least `length` pixels. Throws  std::bad_alloc
    line_memory(std::ptrdiff_t count, std::ptrdiff_t length);

    pixel* line(std::ptrdiff_t index) const noexcept { return pixels_.get() + index * stride_; }
    /// Pixels from one line to the next.
    std::ptrdiff_t stride() const noexcept { return stride_; }

  private:
    struct release
    {
        void operator()(pixel* pixels) const noexcept;
    };
    std::ptrdiff_t stride_;
    std::unique_ptr<pixel, release> pixels_;
};

/// The Fourier transform of one row or column, by FFTW: F(u) = sum f(x) exp(-+2 pi i u x / length), not scaled, zero
/// frequency first. All functions may be called on any thread.
class line_transform
{
  public:
    /// The transform of this length, at least 1, and direction. Those used last are kept, because planning one takes as
    /// long as many lines.
    /// Throws  std::bad_alloc
    static std::shared_ptr<const line_transform> of(std::ptrdiff_t length, fft_direction direction);

    line_transform(std::ptrdiff_t length, fft_direction direction);
    ~line_transform();
    line_transform(const line_transform&) = delete;
    line_transform& operator=(const line_transform&) = delete;

    /// from, to  different lines of line_memory; the contents of `from` are lost
    void operator()(std::complex<float>* from, std::complex<float>* to) const noexcept;

    std::ptrdiff_t length() const noexcept { return length_; }

  private:
    std::ptrdiff_t length_;
    fft_direction direction_;
    void* plan_;  ///< fftwf_plan
};

/// FFTW ends the process when it gets no memory, so this tries to get as much as it may need.
/// longest  of the lines that are transformed next, by `threads` threads
/// Throws  std::bad_alloc
void require_memory_for_lines(std::ptrdiff_t longest, std::ptrdiff_t threads);

}  // namespace zentrix::host
