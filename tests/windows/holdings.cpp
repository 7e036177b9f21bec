#include "tests/windows/holdings.h"

#include "tests/windows/panel_window.h"
#include "win32/handles.h"

#include <gtest/gtest.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>

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

/// Menus and tables of keys under Wine, which accepts handles without their upper half; everything on Windows.
int user_objects()
{
    int count = static_cast<int>(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS));
    for (std::uintptr_t handle = 0x20; handle < 0x10000; handle += 2) {
        count += IsMenu(reinterpret_cast<HMENU>(handle)) != 0;
        count += CopyAcceleratorTableW(reinterpret_cast<HACCEL>(handle), nullptr, 0) > 0;
    }
    return count;
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

/// Tries all values: Wine does not implement GetProcessHandleCount.
int kernel_handles()
{
    int count = 0;
    DWORD flags = 0;
    for (std::uintptr_t value = 4; value < 0x4000; value += 4)
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0;
    return count;
}

int thread_count()
{
    const win32::unique_kernel_object list{CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0)};
    int count = 0;
    THREADENTRY32 each{};
    each.dwSize = sizeof each;
    for (BOOL more = Thread32First(list.get(), &each); more; more = Thread32Next(list.get(), &each))
        count += each.th32OwnerProcessID == GetCurrentProcessId();
    return count;
}

long allocated_bytes()
{
    long sum = 0;
    PROCESS_HEAP_ENTRY block{};
    while (HeapWalk(GetProcessHeap(), &block))
        if (block.wFlags & PROCESS_HEAP_ENTRY_BUSY) sum += static_cast<long>(block.cbData);
    return sum;
}

int created_labels = 0;

LRESULT CALLBACK count_label(int code, WPARAM window, LPARAM created) noexcept
{
    wchar_t name[8] = {};
    if (code == HCBT_CREATEWND && GetClassNameW(reinterpret_cast<HWND>(window), name, 8))
        created_labels += _wcsicmp(name, L"Static") == 0;
    return CallNextHookEx(nullptr, code, window, created);
}

/// Bytes that the system keeps after each call.
long kept_by_system(void (*call)())
{
    constexpr int calls = 100;
    for (int i = 0; i < calls; ++i) call();
    const long before = allocated_bytes();
    for (int i = 0; i < calls; ++i) call();
    return (allocated_bytes() - before) / calls;
}

/// Wine 8.0's common controls of version 6 never free the font's entry of a label.
void make_label()
{
    const win32::unique_window label{
        CreateWindowW(L"STATIC", L"", WS_CHILD, 0, 0, 9, 9, HWND_MESSAGE, nullptr, nullptr, nullptr)};
    SendMessageW(label.get(), WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
}

/// Wine 8.0 keeps the text.
void copy_and_paste()
{
    if (!OpenClipboard(the_frame())) return;
    EmptyClipboard();
    SetClipboardData(CF_UNICODETEXT, GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 20));
    CloseClipboard();
    if (!OpenClipboard(the_frame())) return;
    GetClipboardData(CF_UNICODETEXT);
    CloseClipboard();
}

void print(int round, const holdings& now)
{
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    std::printf(
        "%5d rounds: %d GDI objects, %d menus, %d windows, %d handles, %d threads, %ld bytes, %zu KiB resident\n",
        round, now.graphics_objects, now.user_objects, now.windows, now.handles, now.threads, now.bytes,
        memory.WorkingSetSize / 1024);
    std::fflush(stdout);
}

}  // namespace

holdings present_holdings()
{
    return {graphics_objects(), user_objects(), window_count(), kernel_handles(), thread_count(), allocated_bytes()};
}

int rounds()
{
    const char* const wanted = std::getenv("ZENTRIX_ROUNDS");
    return wanted ? std::atoi(wanted) : 10;
}

void expect_flat(const std::function<void()>& round, int pastes)
{
    constexpr int to_fill_caches = 5, lines = 10;
    constexpr long few_bytes = 4000;
    for (int i = 0; i < to_fill_caches; ++i) round();
    const long for_a_label = kept_by_system(&make_label), for_a_paste = pastes ? kept_by_system(&copy_and_paste) : 0;
    const win32::unique_hook hook{SetWindowsHookExW(WH_CBT, &count_label, nullptr, GetCurrentThreadId())};
    created_labels = 0;
    const holdings before = present_holdings();
    print(0, before);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 1; i <= rounds(); ++i) {
        round();
        if (i % std::max(rounds() / lines, 10) == 0 && i < rounds()) print(i, present_holdings());
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    const holdings after = present_holdings();
    print(rounds(), after);
    const long of_system = for_a_label * created_labels + for_a_paste * pastes * rounds();
    std::printf("%.2f s a round; the system keeps %ld bytes for %d labels and %ld for each paste\n",
                taken.count() / rounds(), for_a_label * created_labels, created_labels, for_a_paste);
    EXPECT_GT(before.graphics_objects, 20) << "the GDI handle table is not at the expected address";
    EXPECT_EQ(after.graphics_objects, before.graphics_objects);
    EXPECT_EQ(after.user_objects, before.user_objects);
    EXPECT_EQ(after.windows, before.windows);
    EXPECT_LE(after.handles, before.handles + 2);
    EXPECT_LE(after.threads, before.threads);
    EXPECT_LE(after.bytes - before.bytes - of_system, few_bytes);
}

}  // namespace windows_tests
