#pragma once

#include "entry/timing_scope.h"
#include "framework/error_manager.h"

namespace qorv::dm {

/// The frame of every exported lifecycle entry: times `operation` under `name`, hands whatever it throws to the host's
/// error manager, and returns normally.
template <class Operation>
void guarded(const char* name, Operation&& operation) noexcept
try {
    const timing_scope timing{name};
    operation();
} catch (...) {
    Gatan::report_current_exception();
}

}  // namespace qorv::dm
