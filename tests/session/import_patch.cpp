#include "tests/session/import_patch.h"

#include <cstring>

static void** findSlot(BYTE* base, const char* function)
{
    const IMAGE_DOS_HEADER* dos = (const IMAGE_DOS_HEADER*)base;
    const IMAGE_NT_HEADERS* headers = (const IMAGE_NT_HEADERS*)(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const IMAGE_IMPORT_DESCRIPTOR* library = (const IMAGE_IMPORT_DESCRIPTOR*)(base + imports.VirtualAddress);
    for (; imports.VirtualAddress && library->Name; ++library) {
        const IMAGE_THUNK_DATA* name = (const IMAGE_THUNK_DATA*)(base + library->OriginalFirstThunk);
        IMAGE_THUNK_DATA* slot = (IMAGE_THUNK_DATA*)(base + library->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            const IMAGE_IMPORT_BY_NAME* entry = (const IMAGE_IMPORT_BY_NAME*)(base + name->u1.AddressOfData);
            if (strcmp((const char*)entry->Name, function) == 0) return (void**)&slot->u1.Function;
        }
    }
    return nullptr;
}

static void writeSlot(void** slot, void* value)
{
    DWORD protection;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

bool patchImport(ImportPatch* patch, HMODULE module, const char* function, void* replacement)
{
    patch->slot = findSlot((BYTE*)module, function);
    if (!patch->slot) return false;
    patch->before = *patch->slot;
    writeSlot(patch->slot, replacement);
    return true;
}

void undoPatch(ImportPatch* patch)
{
    writeSlot(patch->slot, patch->before);
}
