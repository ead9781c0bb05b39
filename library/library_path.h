// Where the library's files lie, in wide characters: a module may lie under a path that is longer than 255
// bytes or has no spelling in the system's code page.
#pragma once

#include <windows.h>

#include "session/ground/module_path.h"

struct LibraryPath {
    WCHAR text[MODULE_PATH_SIZE];
};

// The directory "SELDIB" beside the module, with its backslash. False when it would be too long.
bool libraryDirectory(LibraryPath* directory);

// The path of a file in that directory. False when it would be too long.
bool libraryFile(LibraryPath* path, const WCHAR* name);
