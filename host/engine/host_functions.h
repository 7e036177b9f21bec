#pragma once

#include "host/engine/engine_state.h"

namespace zentrix::host {

/// Each function adds the host functions of one topic; its source is host_functions_<topic>.cpp. Some of the host
/// functions are not called by the library at present. They belong to the interface that the host offers to plug-ins.

/// Creation, queries and changes of images.
void register_image_functions(engine_state& state);
/// Locks, data and slices of images.
void register_image_data_functions(engine_state& state);
/// Tag groups and lists.
void register_tag_functions(engine_state& state);
/// Throwables and script classes.
void register_object_functions(engine_state& state);
/// Messages, the output window, files and custom tools.
void register_window_functions(engine_state& state);

}  // namespace zentrix::host
