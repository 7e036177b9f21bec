#include "python/handlers.h"

#include "python/values.h"

namespace zentrix::python {

namespace {

/// Calls a Python method with all arguments except the first, the object itself.
host::script_value call_with_python_values(const py::object& method, std::span<const host::script_value> arguments)
{
    py::list python_arguments;
    for (const auto& argument : arguments.subspan(arguments.empty() ? 0 : 1))
        python_arguments.append(argument_to_python(argument));
    return result_from_python(call_python(method, py::tuple{python_arguments}));
}

class python_method : public host::function
{
  public:
    python_method(host::prototype signature, py::handle method) : function{std::move(signature)}, owner_{method} {}

    host::script_value call(std::span<const host::script_value> arguments) override
    {
        const bool has_result = signature().result.kind != HOST_VOID;
        return call_back([&] {
            auto result = call_with_python_values(owner_.get(), arguments);
            return has_result ? result : host::script_value{};
        });
    }

  private:
    python_owner owner_;
};

}  // namespace

python_handler::python_handler(py::handle owned)
    : script_object{py::str(py::type::of(owned).attr("__name__")).cast<std::string>()}, owner_{owned}
{}

host::function_ref python_handler::find_method(const std::string& name, const host::prototype& signature)
{
    return call_back([&]() -> host::function_ref {
        const py::object method = py::getattr(owner_.get(), name.c_str(), py::none());
        if (!PyCallable_Check(method.ptr())) return nullptr;
        return std::make_shared<python_method>(signature, method);
    });
}

std::shared_ptr<python_handler> handler_of(py::handle object)
{
    if (auto existing = std::dynamic_pointer_cast<python_handler>(find_stand_in(object))) return existing;
    auto handler = std::make_shared<python_handler>(object);
    remember_stand_in(object, handler);
    return handler;
}

}  // namespace zentrix::python
