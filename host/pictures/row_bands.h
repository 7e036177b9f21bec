#pragma once

#include <functional>

namespace zentrix::host {

/// Divides rows 0 to `rows` - 1 into a band for each processor, calls `work` for all of them at the same time, one on
/// the calling thread, and returns when all are done.
/// rows   each call receives `least` of them or more, so few rows are one call
/// work   must not modify what another call uses; [first, end) are its rows
/// Throws  what `work` throws, after all calls ended
void in_row_bands(int rows, int least, const std::function<void(int first, int end)>& work);

}  // namespace zentrix::host
