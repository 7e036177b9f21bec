#pragma once

#include "host/objects/function.h"

#include <map>
#include <string>
#include <vector>

namespace zentrix::host {

/// A class of script objects: methods that all its objects have.
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

/// An object with methods that the library calls by name and prototype, such as the panel's handler. Give it methods
/// with add_method, or derive and override find_method to serve another language's object.
class script_object : public object
{
  public:
    /// `name` is for messages; `of` (may be null) gives the methods that the object has no own ones for.
    explicit script_object(std::string name = "object", std::shared_ptr<script_class> of = {});

    /// Adds a method, or replaces the one of the same signature:
    ///     handler->add_method("void OnApply( ScriptObject self )", [&](auto arguments) { ...; return script_value{};
    ///     });
    /// Throws  script_error when the prototype cannot be read
    void add_method(std::string_view prototype_text, callable body);

    /// The method called `name` whose signature is `wanted`'s (blanks and parameter names do not matter, as each script
    /// author writes them differently); null when there is none. Own methods come before those of the class.
    virtual function_ref find_method(const std::string& name, const prototype& wanted);

    std::string describe() const override { return "script object \"" + name_ + "\""; }

  private:
    std::string name_;
    std::shared_ptr<script_class> class_;
    std::vector<function_ref> methods_;
};

/// Calls a method from C++. `prototype_text` as the method was defined; `arguments` without the object itself.
/// Throws  script_error "Attempt to dispatch off a null object." on null, or when there is no such method
script_value call_method(const std::shared_ptr<script_object>& self, std::string_view prototype_text,
                         std::span<const script_value> arguments = {});

/// A method without a body: calling it runs the method of that name and prototype of the object it is called on.
function_ref make_abstract_method(const std::string& name, std::string_view prototype_text);

}  // namespace zentrix::host
