#pragma once

#include <functional>

namespace qorv::functions {

/// A filter of certain images with all the memory that it needs. To be called once: the call filters, and allocates
/// nothing. A function that prepares all its filters before it calls the first has written nothing when memory runs
/// out.
struct [[nodiscard]] prepared_filter : std::function<void()>
{
    using function::function;
};

}  // namespace qorv::functions
