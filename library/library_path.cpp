#include "library/library_path.h"

#include <cwchar>

bool libraryDirectory(LibraryPath* directory)
{
    return pathBesideModule(directory->text, L"SELDIB\\");
}

bool libraryFile(LibraryPath* path, const WCHAR* name)
{
    if (!libraryDirectory(path)) return false;
    const size_t length = wcslen(path->text);
    if (length + wcslen(name) >= MODULE_PATH_SIZE) return false;
    wcscpy(path->text + length, name);
    return true;
}
