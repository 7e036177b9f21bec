#pragma once

#include <cstddef>

namespace qorv::optics {

/// Number of threads for a parallel loop over `pieces` pieces of work: at most the number that scripts set, the number
/// of pieces and the number of processors. Fewer where the system starts fewer threads, which is tried before a loop
/// with a larger team than the last one: the parallel runtime ends the process when it cannot start a thread.
/// 1 in a child of a process that has used more: the runtime would wait there for threads that fork does not copy.
int team_size(std::ptrdiff_t pieces) noexcept;

}  // namespace qorv::optics
