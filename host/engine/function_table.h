#pragma once

#include "host/objects/function.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace zentrix::host {

/// The owner of a function.
enum class origin
{
    host,
    library
};

/// All functions that scripts can call, found by exact prototype text or by name.
///
/// Overloads: of the functions that accept the number and kinds of the arguments, the one with the least sum of
/// conversion_cost is called; of equal ones the one registered first.
class function_table
{
  public:
    /// Throws  script_error when the exact prototype text is already registered
    void add(function_ref added, origin whose);
    /// Removes a function by its exact prototype text. False when there is none of that origin.
    bool remove(std::string_view prototype_text, origin whose);
    /// The function of exactly this text; null when there is none.
    function_ref find(std::string_view prototype_text) const;
    /// The prototypes of one origin in the order of their registration.
    std::vector<std::string> prototypes(origin whose) const;
    /// All functions of a name: those of the library, then those of the host.
    std::vector<function_ref> overloads(std::string_view name) const;

    /// The overload to call for these arguments.
    /// Throws  script_error: 'There is no script function "NAME".', or, when no overload fits, a text that lists the
    ///         arguments and the prototypes of that name
    function_ref resolve(std::string_view name, std::span<const script_value> arguments) const;

  private:
    struct entry
    {
        function_ref callee;
        origin whose;
    };
    std::vector<entry> entries_;
    std::unordered_map<std::string, function_ref> by_text_;
};

}  // namespace zentrix::host
