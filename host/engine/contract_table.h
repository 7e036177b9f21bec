#pragma once

#include "contract/host_link.h"

namespace zentrix::host {

/// The contract's table of functions, the same for every engine. Each function reports a failure as the contract says;
/// no exception leaves it.
const host_table& contract_table() noexcept;

}  // namespace zentrix::host
