#pragma once

#include "host/objects/prototype.h"
#include "host/objects/value.h"

#include <functional>
#include <span>

namespace zentrix::host {

/// The body of a function or method. The arguments are in prototype order and converted (see convert); an output
/// parameter that the caller does not need is null. The first argument of a method is the script object.
/// Fails by throwing script_error (or any std::exception).
using callable = std::function<script_value(std::span<const script_value> arguments)>;

/// An object that is called by its prototype: a function of the host or the library, or a method.
class function : public object
{
  public:
    explicit function(prototype signature) : object{object_kind::function}, signature_{std::move(signature)} {}

    const prototype& signature() const noexcept { return signature_; }
    std::string describe() const override { return "function \"" + signature_.text + "\""; }

    /// Calls with converted arguments (see callable). call_converted accepts any arguments.
    virtual script_value call(std::span<const script_value> arguments) = 0;

  private:
    prototype signature_;
};

using function_ref = std::shared_ptr<function>;

/// Makes a function from a C++ callable. Throws  script_error when the prototype cannot be read
function_ref make_function(std::string_view prototype_text, callable body);

/// Converts the arguments to the types of the prototype, calls, and converts the result to the result type.
/// Throws  script_error for a wrong number of arguments, wrong kinds or numbers out of range; also anything that the
///         body throws
script_value call_converted(function& callee, std::span<const script_value> arguments);

}  // namespace zentrix::host
