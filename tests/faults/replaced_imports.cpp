#ifdef _WIN32
#include "tests/faults/replaced_imports.h"

#include <windows.h>

namespace faults {

bool replace_imports(const std::string& file, const std::map<std::string, void (*)()>& replacements)
{
    const auto base = reinterpret_cast<BYTE*>(GetModuleHandleA(file.c_str()));
    if (!base) return false;
    const auto headers =
        reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    std::size_t replaced = 0;
    for (auto from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports); from->Name; ++from) {
        auto name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + from->OriginalFirstThunk);
        auto address = reinterpret_cast<IMAGE_THUNK_DATA*>(base + from->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            const auto named = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            const auto found = replacements.find(named->Name);
            if (found == replacements.end()) continue;
            DWORD protection = 0;
            VirtualProtect(address, sizeof *address, PAGE_READWRITE, &protection);
            address->u1.Function = reinterpret_cast<ULONG_PTR>(found->second);
            VirtualProtect(address, sizeof *address, protection, &protection);
            ++replaced;
        }
    }
    return replaced == replacements.size();
}

}  // namespace faults
#endif
