// Runs when the library is loaded. Kept apart from the other sources, which the tests link into programs.
#include "plugin/app.h"

namespace {

CZXApp the_app;
[[maybe_unused]] const int started = the_app.InitInstance();

}  // namespace
