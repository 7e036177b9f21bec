#pragma once

#include "host/objects/function.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace zentrix::host {

/// Whose function it is.
enum class origin
{
    host,
    library
};

/// All functions that scripts can call, by exact prototype text and by name with overloads.
///
/// Which overload a call means: those that take that number of arguments and whose kinds the arguments convert to; of
/// these the one whose conversions are the smallest (an integer for a long before a double before a complex, a real
/// number for a double before a complex before a long, a complex picture for a ComplexImagePtr before any other, a null
/// reference for any object); among equals the one registered first.
class function_table
{
  public:
    /// Throws  script_error when a function of exactly this prototype text is there already
    void add(function_ref added, origin whose);
    /// Takes a function out by its exact prototype text; false when there is none of that origin.
    bool remove(std::string_view prototype_text, origin whose);
    /// The function of exactly this text; null when there is none.
    function_ref find(std::string_view prototype_text) const;
    /// The prototypes of one origin in the order of their registration.
    std::vector<std::string> prototypes(origin whose) const;
    /// All functions of that name, library's and host's, in that order.
    std::vector<function_ref> overloads(std::string_view name) const;

    /// The overload that these arguments mean.
    /// Throws  script_error: 'There is no script function "NAME".', or for wrong arguments a text that lists what was
    ///         given and the prototypes that exist
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
