#include "host/engine/host_functions.h"

namespace zentrix::host {

void register_object_functions(engine_state& state)
{
    state.add_host_function("Throwable NewThrowableFromString( dm_string )",
                            [](const arguments& passed) { return std::make_shared<throwable>(passed.text(0)); });
    state.add_host_function("Function NewAbstractMethod( dm_string, dm_string )", [](const arguments& passed) {
        return make_abstract_method(passed.text(0), passed.text(1));
    });
    state.add_host_function("Function ScriptClassAddMethod( ScriptClass, Function )", [](const arguments& passed) {
        auto method = passed.object<function>(1);
        passed.object<script_class>(0)->add_method(method);
        return method;
    });
}

}  // namespace zentrix::host
