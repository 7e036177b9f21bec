#include "host/objects/function.h"

#include "host/objects/conversion.h"

namespace zentrix::host {

namespace {

class callable_function : public function
{
  public:
    callable_function(prototype signature, callable body) : function{std::move(signature)}, body_{std::move(body)} {}
    script_value call(std::span<const script_value> arguments) override { return body_(arguments); }

  private:
    callable body_;
};

}  // namespace

function_ref make_function(std::string_view prototype_text, callable body)
{
    return std::make_shared<callable_function>(parse_prototype(prototype_text), std::move(body));
}

script_value call_converted(function& callee, std::span<const script_value> arguments)
{
    const auto& signature = callee.signature();
    if (!signature.takes(arguments.size()))
        throw script_error{"\"" + signature.text + "\" was called with " + std::to_string(arguments.size()) +
                           " arguments."};
    std::vector<script_value> converted;
    converted.reserve(arguments.size());
    for (std::size_t i = 0; i < arguments.size(); ++i)
        converted.push_back(convert(arguments[i], signature.parameter_of(i).type));
    const auto result = callee.call(converted);
    return signature.result.kind == HOST_VOID ? script_value{} : convert(result, signature.result);
}

}  // namespace zentrix::host
