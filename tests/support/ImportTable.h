#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include <windows.h>

namespace zvtest {

/// A function that stands before one of the system's in modules of this process.
struct ImportReplacement
{
    template <typename Function>
    ImportReplacement(const char* replacedName, Function* function)
        : name(replacedName)
        , address(reinterpret_cast<ULONGLONG>(function))
    {
    }

    const char* name;
    ULONGLONG address;
};

/// The system's own function, also where the import table has another one.
template <typename Function>
Function* systemFunction(Function* /*type*/, const char* name)
{
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

inline void replaceImport(IMAGE_THUNK_DATA& entry, ULONGLONG address)
{
    DWORD protection = 0;
    VirtualProtect(&entry, sizeof(entry), PAGE_READWRITE, &protection);
    entry.u1.Function = address;
    VirtualProtect(&entry, sizeof(entry), protection, &protection);
}

/// Replaces functions in the import table of the module called \p name, or of the program if that is null. A module
/// that isn't loaded stays as it is.
template <std::size_t count>
void replaceImports(const wchar_t* name, const std::array<ImportReplacement, count>& replacements)
{
    auto* const base = reinterpret_cast<unsigned char*>(GetModuleHandleW(name));
    if (!base)
        return;
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const header = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports =
        header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (imports.Size == 0)
        return;
    auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const auto* import =
            reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* entry = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; import->u1.AddressOfData != 0; ++import, ++entry) {
            if (IMAGE_SNAP_BY_ORDINAL(import->u1.Ordinal))
                continue;
            const auto* const function =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + import->u1.AddressOfData);
            for (const ImportReplacement& replacement : replacements) {
                if (std::strcmp(reinterpret_cast<const char*>(function->Name), replacement.name)
                    == 0)
                    replaceImport(*entry, replacement.address);
            }
        }
    }
}

} // namespace zvtest
