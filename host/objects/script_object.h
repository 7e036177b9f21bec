#pragma once

#include "host/objects/function.h"

#include <map>
#include <string>
#include <vector>

namespace zentrix::host {

/// A class of script objects: the methods that its objects share.
class script_class : public object
{
  public:
    explicit script_class(std::string name) : object{object_kind::script_class}, name_{std::move(name)} {}

    const std::string& name() const noexcept { return name_; }
    void add_method(function_ref method) { methods_.push_back(std::move(method)); }
    const std::vector<function_ref>& methods() const noexcept { return methods_; }
    std::string describe() const override { return "script class \"" + name_ + "\""; }

  private:
    std::string name_;
    std::vector<function_ref> methods_;
};

/// An object with methods that the library calls by name and prototype, such as the panel's handler. Methods are added
/// with add_method; a derived class that represents an object of another language overrides find_method.
class script_object : public object
{
  public:
    /// name       for messages
    /// own_class  fallback class for methods that the object does not define; may be null
    explicit script_object(std::string name = "object", std::shared_ptr<script_class> own_class = {});

    /// Adds a method, or replaces the one of the same signature:
    ///     handler->add_method("void OnApply( ScriptObject self )", [&](auto arguments) { return script_value{}; });
    /// Throws  script_error when the prototype cannot be read
    void add_method(std::string_view prototype_text, callable body);

    /// The method of that name and signature; null when there is none. Spaces and parameter names do not matter,
    /// because scripts differ in them. The object's own methods take precedence over those of its class.
    virtual function_ref find_method(const std::string& name, const prototype& signature);

    std::string describe() const override { return "script object \"" + name_ + "\""; }

  private:
    std::string name_;
    std::shared_ptr<script_class> class_;
    std::vector<function_ref> methods_;
};

/// Calls a method.
/// prototype_text  prototype of the method, see script_object::find_method
/// arguments       without the object itself
/// Throws          script_error "Attempt to dispatch off a null object." when `self` is null; also when there is no
///                 such method, and as call_converted
script_value call_method(const std::shared_ptr<script_object>& self, std::string_view prototype_text,
                         std::span<const script_value> arguments = {});

/// A method without a body. A call runs the method of that name and prototype of the object that is its first argument.
/// Throws  script_error when the prototype cannot be read or has another name
function_ref make_abstract_method(const std::string& name, std::string_view prototype_text);

}  // namespace zentrix::host
