#pragma once

#include "entry/timing_scope.h"
#include "framework/error_manager.h"
#include "plugin/plugin.h"

namespace qorv::dm {

/// The frame of every exported lifecycle entry: gets the plug-in object, times `operation(plug_in)` under `name`,
/// passes any exception to the host's error manager, and returns normally.
template <class Operation>
void guarded(const char* name, Operation&& operation) noexcept
try {
    CZXPlugIn& plug_in = the_plug_in();
    const timing_scope timing{name};
    operation(plug_in);
} catch (...) {
    Gatan::report_current_exception();
}

}  // namespace qorv::dm
