#include "plugin/plugin.h"

#include <memory>
#include <string>
#include <utility>

#include "binding/host_functions.h"
#include "plugin/core.h"
#include "plugin/handler.h"
#include "plugin/module.h"

namespace {

constexpr char companion_extension[] = ".gtk";
constexpr char companion_missing[] =
    "The gtk for Zentrix is missing. In order to use the Zentrix install the gtk for Zentrix on to the plug-in folder "
    "and launch the DM again.";

CZXPlugIn* the_instance = nullptr;
QORV::DM::CZenkor* the_core = nullptr;

/// The companion script package is in the library's folder and has the library's file name with another extension.
void check_companion_package()
{
    void* const module = qorv::dm::module_handle();
    if (!module) return;
    const std::string path = qorv::dm::module_path(module);
    if (path.empty()) return;
    const std::string package = qorv::dm::with_extension(path, companion_extension);
    if (!qorv::binding::DoesFileExist(package)) qorv::binding::OkDialog(companion_missing);
}

}  // namespace

void CZXPlugIn::Start()
{
    auto core = std::make_unique<QORV::DM::CZenkor>(*this, "ZX");
    delete std::exchange(the_core, core.release());
    check_companion_package();
}

void CZXPlugIn::End()
{
    delete std::exchange(the_core, nullptr);
    qorv::dm::release_held();
}

CZXPlugIn& the_plug_in()
{
    if (!the_instance) {  // later calls skip the guard of the local static
        static CZXPlugIn plug_in;
        the_instance = &plug_in;
    }
    return *the_instance;
}
