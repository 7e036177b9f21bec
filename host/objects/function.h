#pragma once

#include "host/objects/prototype.h"
#include "host/objects/value.h"

#include <functional>
#include <span>

namespace zentrix::host {

/// The body of a function or method. Arguments come in prototype order, already converted: integers for all integer
/// types and truth values, real numbers for float and double, complex numbers, texts, objects (or null), output
/// parameters (or null, where the caller wants none). A method's first argument is the script object itself.
/// Fails by throwing script_error (or any std::exception).
using callable = std::function<script_value(std::span<const script_value> arguments)>;

/// Anything that can be called by its prototype: a function of the host, one of the library, a method.
class function : public object
{
  public:
    explicit function(prototype signature) : object{object_kind::function}, signature_{std::move(signature)} {}

    const prototype& signature() const noexcept { return signature_; }
    std::string describe() const override { return "function \"" + signature_.text + "\""; }

    /// Calls with arguments that fit the prototype (see callable); call_converted below takes any.
    virtual script_value call(std::span<const script_value> arguments) = 0;

  private:
    prototype signature_;
};

using function_ref = std::shared_ptr<function>;

/// A function made of a C++ callable. Throws  script_error when the prototype cannot be read
function_ref make_function(std::string_view prototype_text, callable body);

/// Converts the arguments by the prototype, then calls; converts the result to what the prototype says.
/// Throws  script_error for a wrong number of arguments, wrong kinds, numbers out of range, and what the body throws
script_value call_converted(function& callee, std::span<const script_value> arguments);

}  // namespace zentrix::host
