#include "image/interruption.h"

#include <chrono>
#include <stdexcept>

namespace qorv::dm {
namespace {

using clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds pause_between_questions{50};

interruption_question the_question = nullptr;
clock::time_point next_question;

}  // namespace

void set_interruption_question(interruption_question question) noexcept
{
    the_question = question;
    next_question = {};
}

void stop_if_interrupted()
{
    if (!the_question || clock::now() < next_question) return;
    const bool stop = the_question();
    next_question = clock::now() + pause_between_questions;  // the answer itself may take long
    if (stop) throw std::runtime_error{call_interrupted};
}

}  // namespace qorv::dm
