#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace zentrix::host {

/// Whether standard error and standard output go to a person: a terminal that can redraw a line.
bool is_terminal_for_bar();
bool output_is_terminal();

/// How far a batch is. The bar is the last line of standard error and is redrawn in place.
class progress
{
  public:
    progress(std::size_t files, bool draws_bar);
    /// Removes the bar.
    ~progress();
    progress(const progress&) = delete;
    progress& operator=(const progress&) = delete;

    /// One more file. Draws at most ten times per second.
    void count(bool failed);
    /// Prints whole lines on standard error, above the bar.
    void print_above(const std::string& lines);
    /// Prints whole lines on standard output.
    void print_output(const std::string& lines);
    /// Since the start.
    std::chrono::duration<double> elapsed() const;

  private:
    void draw();
    void clear();

    std::size_t files_, done_ = 0, failed_ = 0;
    bool draws_;
    std::size_t drawn_ = 0;  ///< columns of the present bar
    std::chrono::steady_clock::time_point start_, last_drawn_;
};

/// The line that is drawn: "[#####-----] 5 of 10 files, 1 failed, 12 per second, 3 s left".
std::string bar_text(std::size_t done, std::size_t files, std::size_t failed, double seconds);

}  // namespace zentrix::host
