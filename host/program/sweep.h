#pragma once

#include <cstddef>
#include <string>

#include "host/objects/calibration.h"
#include "host/program/json.h"
#include "lens/aberrations.h"

namespace zentrix::program {

/// One coefficient at equal steps of its modulus: the results become the planes of a stack.
struct sweep
{
    lens::coefficient which = lens::coefficient::C1;
    double start = 0, step = 0;  ///< in the coefficient's unit
    double angle_degrees = 0;
    std::size_t count = 0;

    lens::polar value(std::size_t plane) const { return {start + static_cast<double>(plane) * step, angle_degrees}; }
    /// The z axis of the stack.
    host::axis_scale axis() const;
    /// "C1 -60 to 60 nm in 25 steps of 5": for messages.
    std::string text() const;
    json as_json() const;
};

/// Whether the value of a coefficient is written as a sweep.
bool is_sweep(const std::string& word);

/// Reads START:STOP:STEP, with both ends, and START:STOP:STEP@DEGREES for a coefficient that is not round. The last
/// value is at most STOP.
/// Throws  std::invalid_argument naming the coefficient
sweep parse_sweep(lens::coefficient which, const std::string& word);

}  // namespace zentrix::program
