#include "session/ground/module_path.h"

#include <cwchar>

#include "session/ground/module_state.h"

bool pathBesideModule(WCHAR (&path)[MODULE_PATH_SIZE], const WCHAR* fileName)
{
    const DWORD length = GetModuleFileNameW(moduleInstance, path, MODULE_PATH_SIZE);
    if (length == 0 || length >= MODULE_PATH_SIZE) return false;
    WCHAR* const slash = wcsrchr(path, L'\\');
    WCHAR* const name = slash ? slash + 1 : path;
    if ((name - path) + wcslen(fileName) >= MODULE_PATH_SIZE) return false;
    wcscpy(name, fileName);
    return true;
}
