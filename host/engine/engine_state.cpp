#include "host/engine/engine_state.h"

#include "host/engine/contract_table.h"
#include "host/engine/host_functions.h"

#include <algorithm>

namespace zentrix::host {

engine_state::engine_state(engine_options chosen) : options{std::move(chosen)}, link{{&contract_table()}, this}
{
    records->listening = options.listening;
    register_image_functions(*this);
    register_image_data_functions(*this);
    register_tag_functions(*this);
    register_object_functions(*this);
    register_window_functions(*this);
}

void engine_state::add_host_function(std::string_view prototype_text, host_function_body body)
{
    if (std::ranges::find(options.withheld, prototype_text) != options.withheld.end()) return;
    auto call = [body = std::move(body)](std::span<const script_value> values) { return body(arguments{values}); };
    functions.add(make_function(prototype_text, std::move(call)), origin::host);
}

std::vector<floating_window>::iterator engine_state::window(std::string_view title)
{
    return std::ranges::find(windows, title, &floating_window::title);
}

}  // namespace zentrix::host
