#include "python/handlers.h"

#include "python/values.h"

namespace zentrix::python {

namespace {

/// Calls the Python method with all arguments but the object itself.
host::script_value call_python(const py::object& method, std::span<const host::script_value> arguments)
{
    py::list given;
    for (const auto& one : arguments.subspan(arguments.empty() ? 0 : 1)) given.append(argument_to_python(one));
    return result_from_python(method(*py::tuple{given}));
}

class python_method : public host::function
{
  public:
    python_method(host::prototype signature, py::handle method) : function{std::move(signature)}, owner_{method} {}

    host::script_value call(std::span<const host::script_value> arguments) override
    {
        const bool wants_result = signature().result.kind != HOST_VOID;
        return call_back([&] {
            auto answer = call_python(owner_.get(), arguments);
            return wants_result ? answer : host::script_value{};
        });
    }

  private:
    python_owner owner_;
};

}  // namespace

python_handler::python_handler(py::handle served)
    : script_object{py::str(py::type::of(served).attr("__name__")).cast<std::string>()}, owner_{served}
{}

host::function_ref python_handler::find_method(const std::string& name, const host::prototype& wanted)
{
    return call_back([&]() -> host::function_ref {
        const py::object method = py::getattr(owner_.get(), name.c_str(), py::none());
        if (!PyCallable_Check(method.ptr())) return nullptr;
        return std::make_shared<python_method>(wanted, method);
    });
}

std::shared_ptr<python_handler> handler_of(py::handle object)
{
    if (auto present = std::dynamic_pointer_cast<python_handler>(find_stand_in(object))) return present;
    auto made = std::make_shared<python_handler>(object);
    remember_stand_in(object, made);
    return made;
}

}  // namespace zentrix::python
