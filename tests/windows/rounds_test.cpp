// Panels are created, used in all ways that a user has, and destroyed. Nothing may be left. By hand, for longer:
//     ZENTRIX_ROUNDS=1000 tools/under-wine build/windows/tests/windows_tests.exe --gtest_filter=*LeaveNothingBehind
#include "tests/windows/page_tables.h"

#include <cstdlib>

namespace windows_tests {
namespace {

/// Live entries of the process's GDI handle table. Wine does not implement GetGuiResources.
int graphics_objects()
{
    struct entry
    {
        std::uint64_t object;
        std::uint16_t process, count, unique;
        std::uint8_t type, flags;
        std::uint64_t user;
    };
    constexpr int entries = 0x4000, table_offset = 0xf8;  // in the process environment block
    const auto block = reinterpret_cast<const char*>(__readgsqword(0x60));
    const auto* const table = *reinterpret_cast<const entry* const*>(block + table_offset);
    int live = 0;
    for (int i = 0; i < entries; ++i) live += table[i].type != 0;
    return live;
}

int window_count()
{
    int count = 0;
    const auto each = [](HWND window, LPARAM counter) -> BOOL {
        if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId()) ++*reinterpret_cast<int*>(counter);
        return TRUE;
    };
    for (const HWND root : {GetDesktopWindow(), HWND_MESSAGE})
        EnumChildWindows(root, each, reinterpret_cast<LPARAM>(&count));
    return count;
}

/// 0 under Wine, which does not count them.
int kernel_handles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

/// Allocated in the process's heap.
long allocated_bytes()
{
    long sum = 0;
    PROCESS_HEAP_ENTRY block{};
    while (HeapWalk(GetProcessHeap(), &block))
        if (block.wFlags & PROCESS_HEAP_ENTRY_BUSY) sum += static_cast<long>(block.cbData);
    return sum;
}

int rounds()
{
    const char* const wanted = std::getenv("ZENTRIX_ROUNDS");
    return wanted ? std::atoi(wanted) : 10;
}

class many_panels : public panel_window
{
  protected:
    /// The panel's tooltip window.
    HWND tips() const
    {
        HWND found = nullptr;
        const auto each = [](HWND window, LPARAM result) -> BOOL {
            if (control{window}.class_name() != "tooltips_class32") return TRUE;
            *reinterpret_cast<HWND*>(result) = window;
            return FALSE;
        };
        EnumThreadWindows(GetCurrentThreadId(), each, reinterpret_cast<LPARAM>(&found));
        return found;
    }

    /// Whether the tooltip of a control shows a text that contains `part`.
    bool shows_tip(const control& of, const std::string& part) const
    {
        RECT place;
        GetWindowRect(of.window, &place);
        SetCursorPos((place.left + place.right) / 2, place.top + 6);  // not on the text of a knob
        const control tip{tips()};
        tip.send(TTM_POP);
        tip.send(TTM_SETDELAYTIME, TTDT_INITIAL, 1);
        for (int move = 0; move < 30; ++move) {
            of.send(WM_MOUSEMOVE, 0, MAKELPARAM(2, 2));
            // Each move starts the delay again, so the next one is not sent at once.
            for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < 300; Sleep(1)) {
                pump();
                if (tip.visible() && tip.text().find(part) != std::string::npos) return true;
            }
        }
        return false;
    }

    void live()
    {
        panel = host.open_panel(frame);
        show_panel();
        for (const page_table& page : pages) {
            go_to_page(page.index);
            for (const row_table& row : page.rows) {
                of_page(row.modulus).type("2x");
                of_page(row.modulus).type("2");
                of_page(row.modulus_spin).click_spin(1);
                if (!row.knob) continue;
                of_page(row.knob).click(27, 5);
                of_page(row.knob).send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
            }
            RedrawWindow(panel, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        }
        EXPECT_EQ(of_page(5101).text(), "3");
        EXPECT_EQ(of_page(5104).send(TBM_GETPOS), 91);
        of_panel(5100).send(BM_CLICK);
        show_panel(false);
        show_panel();
        host.close_panel();
        pump();
        for (const char* key : {"ModA5", "AngA5"}) key[0] == 'A' ? host.set(key, 0) : host.set(key, 0.0f);
        host.take_events();
        host.take_reads();
    }
};

TEST_F(many_panels, LeaveNothingBehind)
{
    host.close_panel();
    for (int i = 0; i < 5; ++i) live();
    const int objects = graphics_objects(), windows = window_count(), handles = kernel_handles();
    const long memory = allocated_bytes();
    for (int i = 0; i < rounds(); ++i) live();
    EXPECT_EQ(graphics_objects(), objects);
    EXPECT_EQ(window_count(), windows);
    EXPECT_LE(kernel_handles(), handles + 2);
    EXPECT_NEAR(allocated_bytes(), memory, 20000);
    EXPECT_GT(objects, 20) << "the GDI handle table is not at the expected address";
    std::printf("%d rounds: %d objects, %d windows, %d handles, %ld -> %ld bytes\n", rounds(), objects, windows,
                kernel_handles(), memory, allocated_bytes());
    panel = host.open_panel(frame);
}

TEST_F(many_panels, ExplainTheirControlsInTooltips)
{
    host.set("ModB2", 1234.5625f);
    host.set("AngB2", 110);
    show_panel();
    go_to_page(1);
    EXPECT_TRUE(shows_tip(of_page(5092), "Now 1234.5625 nm")) << control{tips()}.text();
    EXPECT_TRUE(shows_tip(of_page(5000), "C21 = 3 B2 = 3703.6875 nm, phi21 = angle = 110 degrees"))
        << control{tips()}.text();
    EXPECT_TRUE(shows_tip(of_panel(5100), "sin(chi)")) << control{tips()}.text();
    const control strip{GetDlgItem(sheet(), 0x3020)};
    const HWND first = tips();
    host.close_panel();
    EXPECT_FALSE(IsWindow(first));
    EXPECT_FALSE(IsWindow(strip.window));
    panel = host.open_panel(frame);
}

}  // namespace
}  // namespace windows_tests
