#include "windows/panel_window.h"

namespace windows_tests {
namespace {

TEST_F(panel_window, looks_complete)
{
    show_panel();
    const char* names[] = {"rotation", "basic", "third", "fourth", "fifth"};
    for (int page = 4; page >= 0; --page) {
        go_to_page(page);
        screenshot(names[page]);
    }
    RECT r = control{panel}.place();
    printf("panel %ld %ld %ld %ld\n", r.left, r.top, r.right, r.bottom);
    r = control{sheet()}.place();
    printf("sheet %ld %ld %ld %ld\n", r.left, r.top, r.right, r.bottom);
    r = control{GetDlgItem(sheet(), 0x3020)}.place();
    printf("tab %ld %ld %ld %ld\n", r.left, r.top, r.right, r.bottom);
    r = control{active_page()}.place();
    printf("page %ld %ld %ld %ld\n", r.left, r.top, r.right, r.bottom);
    for (auto& e : heard()) puts(e.c_str());
}

}  // namespace
}  // namespace windows_tests
