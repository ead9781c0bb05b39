#include "host/library.h"

#include <cstdio>

constexpr wchar_t LIBRARY_NAME[] = L"KOVRTCH32.dll";
constexpr wchar_t CONTROL_LIBRARY_NAME[] = L"KOVCTRL32.dll";

#ifdef _WIN64
constexpr WORD OWN_MACHINE = IMAGE_FILE_MACHINE_AMD64;
#else
constexpr WORD OWN_MACHINE = IMAGE_FILE_MACHINE_I386;
#endif

static HMODULE load(const wchar_t* name)
{
    // A full path keeps the current folder out of the search.
    return LoadLibraryExW((programFolder() + name).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

// What kind of processor a program file is for; 0 when it is none.
static WORD machineOf(const std::wstring& path)
{
    FILE* file = _wfopen(path.c_str(), L"rb");
    IMAGE_DOS_HEADER dos = {};
    DWORD signature = 0;
    IMAGE_FILE_HEADER header = {};
    const bool read = file && fread(&dos, sizeof dos, 1, file) == 1 && dos.e_magic == IMAGE_DOS_SIGNATURE &&
                      fseek(file, dos.e_lfanew, SEEK_SET) == 0 && fread(&signature, sizeof signature, 1, file) == 1 &&
                      fread(&header, sizeof header, 1, file) == 1 && signature == IMAGE_NT_SIGNATURE;
    if (file) fclose(file);
    return read ? header.Machine : 0;
}

static LibraryFault faultOf(const std::wstring& path)
{
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) return LibraryFault::Missing;
    const WORD machine = machineOf(path);
    return machine && machine != OWN_MACHINE ? LibraryFault::OtherBits : LibraryFault::Damaged;
}

// The system does not say which of the two libraries it could not load: the one that the other needs is tried first.
static void explain(EditorLibrary* library)
{
    HMODULE controls = load(CONTROL_LIBRARY_NAME);
    library->faulty = controls ? LIBRARY_NAME : CONTROL_LIBRARY_NAME;
    library->fault = faultOf(programFolder() + library->faulty);
    if (controls) FreeLibrary(controls);
}

std::wstring programFolder()
{
    wchar_t path[32768];
    const DWORD length = GetModuleFileNameW(nullptr, path, 32768);
    std::wstring folder(path, length < 32768 ? length : 0);
    folder.resize(folder.find_last_of(L"\\/") + 1);
    return folder;
}

EditorLibrary loadLibraryBeside()
{
    EditorLibrary library;
    library.module = load(LIBRARY_NAME);
    if (library.module)
        library.retouch =
            (RetouchEntry)(void*)GetProcAddress(library.module, MAKEINTRESOURCEA(KOVRTCH32_ENTRY_ORDINAL));
    if (!library.retouch) explain(&library);
    return library;
}
