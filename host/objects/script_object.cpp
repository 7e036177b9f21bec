#include "host/objects/script_object.h"

#include <algorithm>

namespace zentrix::host {

namespace {

constexpr char null_dispatch[] = "Attempt to dispatch off a null object.";

function_ref find_in(const std::vector<function_ref>& methods, const std::string& name, const prototype& signature)
{
    const auto found = std::ranges::find_if(methods, [&](const function_ref& one) {
        return one->signature().name == name && one->signature().same_signature(signature);
    });
    return found == methods.end() ? nullptr : *found;
}

function_ref require_method(const std::shared_ptr<script_object>& self, const std::string& name,
                            const prototype& signature)
{
    if (!self) throw script_error{null_dispatch};
    auto method = self->find_method(name, signature);
    if (!method) throw script_error{self->describe() + " has no method \"" + signature.text + "\"."};
    return method;
}

class abstract_method : public function
{
  public:
    using function::function;

    script_value call(std::span<const script_value> arguments) override
    {
        const auto self = arguments.empty() ? nullptr : object_in<script_object>(arguments[0]);
        return require_method(self, signature().name, signature())->call(arguments);
    }
};

}  // namespace

script_object::script_object(std::string name, std::shared_ptr<script_class> own_class)
    : object{object_kind::script_object}, name_{std::move(name)}, class_{std::move(own_class)}
{}

void script_object::add_method(std::string_view prototype_text, callable body)
{
    auto added = make_function(prototype_text, std::move(body));
    std::erase_if(methods_, [&](const auto& one) { return one->signature().same_signature(added->signature()); });
    methods_.push_back(std::move(added));
}

function_ref script_object::find_method(const std::string& name, const prototype& signature)
{
    auto own = find_in(methods_, name, signature);
    return own || !class_ ? own : find_in(class_->methods(), name, signature);
}

script_value call_method(const std::shared_ptr<script_object>& self, std::string_view prototype_text,
                         std::span<const script_value> arguments)
{
    const auto signature = parse_prototype(prototype_text);
    const auto method = require_method(self, signature.name, signature);
    std::vector<script_value> all{object_ref{self}};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return call_converted(*method, all);
}

function_ref make_abstract_method(const std::string& name, std::string_view prototype_text)
{
    auto signature = parse_prototype(prototype_text);
    if (signature.name != name)
        throw script_error{"The method \"" + name + "\" has a prototype of another name: \"" + signature.text + "\"."};
    return std::make_shared<abstract_method>(std::move(signature));
}

}  // namespace zentrix::host
