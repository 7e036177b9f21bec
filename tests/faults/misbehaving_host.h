#pragma once

#include <cstdint>
#include <string>

#include "host/engine/engine.h"

/// Makes one call of the host fail in ways that host/engine/faults.h does not have. Exceptions cross no boundary, since
/// the host turns them into errors; these show it on each platform.
namespace faults {

enum class misbehaviour
{
    throws_number,
    throws_bad_alloc,
    refuses,    ///< fails without a throwable
    gives_null  ///< carries the call out, but gives null for its result if that is an object, a text or a pointer
};

/// Makes the library's calls of functions and methods of this host count. To be called before the library is linked.
void watch_calls(zentrix::host::engine& host);

/// Plans the misbehaviour of one call and resets the count.
/// number  counted from 1; 0: none
void plan_misbehaviour(misbehaviour how, std::uint64_t number);
/// Ends the plan. Returns the prototype of the call that misbehaved; empty if it was not reached.
std::string end_misbehaviour();
/// The library's calls since the last plan.
std::uint64_t watched_calls();

}  // namespace faults
