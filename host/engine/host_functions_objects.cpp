#include "host/engine/arguments.h"
#include "host/engine/engine_state.h"

namespace zentrix::host {

namespace {

using values = std::span<const script_value>;

}  // namespace

void add_object_functions(engine::inside& to)
{
    to.add_host_function("Throwable NewThrowableFromString( dm_string )", [](values list) -> script_value {
        return std::make_shared<throwable>(arguments{list}.text(0));
    });
    to.add_host_function("Function NewAbstractMethod( dm_string, dm_string )", [](values list) -> script_value {
        const arguments given{list};
        return make_abstract_method(given.text(0), given.text(1));
    });
    to.add_host_function("Function ScriptClassAddMethod( ScriptClass, Function )", [](values list) -> script_value {
        const arguments given{list};
        const auto method = given.object<function>(1);
        given.object<script_class>(0)->add_method(method);
        return method;
    });
}

}  // namespace zentrix::host
