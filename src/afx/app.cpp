#include "afx/app.h"

namespace {

CWinApp* the_app = nullptr;

}  // namespace

extern "C" IMAGE_DOS_HEADER __ImageBase;  // placed by the linker at the start of the module

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
        ::OutputDebugStringA("An exception without a text left a message handler.");
    }
    return message == WM_CREATE ? -1 : 0;
}

CWinApp* AfxGetApp() { return the_app; }

HINSTANCE AfxGetInstanceHandle() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }
