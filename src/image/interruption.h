#pragma once

/// Lets the user stop a long call. Everything here is for the host's main thread.
namespace qorv::dm {

/// The text of a stopped call.
inline constexpr char call_interrupted[] = "The call was interrupted.";

/// Returns whether the user has asked to stop the running call. Must not throw.
using interruption_question = bool (*)();

/// Sets the question that stop_if_interrupted asks; null, as at the start: nothing is asked.
void set_interruption_question(interruption_question question) noexcept;

/// Kernels that can run for long call this once per row or in a similar outer step, never in a parallel loop. The
/// question is asked every 50 ms at most; otherwise a call costs one reading of the clock. Not inline, so that the
/// sources of all instruction sets share one copy.
/// Throws  std::runtime_error with call_interrupted when the answer is yes
void stop_if_interrupted();

}  // namespace qorv::dm
