#include "afx/app.h"

namespace {

CWinApp* the_app = nullptr;

LRESULT result_after_exception(UINT message) { return message == WM_CREATE ? -1 : 0; }

}  // namespace

// The name is the linker's, which places this at the start of the module.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(clang-diagnostic-reserved-identifier)

CWinApp::CWinApp() { the_app = this; }

CWinApp::~CWinApp()
{
    if (the_app == this) the_app = nullptr;
}

LRESULT CWinApp::ProcessWndProcException(std::exception_ptr error, UINT message)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& e) {
        ::OutputDebugStringA(e.what());
    } catch (...) {
        ::OutputDebugStringA("A message handler threw an exception without a text.");
    }
    return result_after_exception(message);
}

LRESULT AfxProcessException(UINT message) noexcept
{
    try {
        if (the_app) return the_app->ProcessWndProcException(std::current_exception(), message);
    } catch (...) {  // reporting failed as well
    }
    return result_after_exception(message);
}

HINSTANCE AfxGetInstanceHandle() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }
