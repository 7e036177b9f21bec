#include "plugin/app.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include "framework/error_manager.h"
#include "plugin/module.h"

namespace {

const char inside_this_module = 0;  // any address in the library identifies its module

}  // namespace

int CZXApp::InitInstance()
{
#ifdef _WIN32
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       &inside_this_module, &module);
    qorv::dm::set_module_handle(module);
#else
    qorv::dm::set_module_handle(const_cast<char*>(&inside_this_module));
#endif
    return CWinApp::InitInstance();
}

#ifdef _WIN32
LRESULT CZXApp::ProcessWndProcException(std::exception_ptr error, UINT message)
{
    try {
        std::rethrow_exception(error);
    } catch (...) {
        Gatan::report_current_exception();
    }
    return message == WM_CREATE ? -1 : 0;
}
#endif
