// What runs when the library is loaded. Apart from the other sources, since tests link those into programs.
#include "plugin/app.h"

namespace {

CZXApp the_app;
[[maybe_unused]] const int started = the_app.InitInstance();

}  // namespace
