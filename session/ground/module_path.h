// Where the library keeps its files: the directory of the module itself.
#pragma once

#include <windows.h>

constexpr int MODULE_PATH_SIZE = 1024;  // characters

// The path of a file in the module's directory. False when it would be longer than the buffer.
bool pathBesideModule(WCHAR (&path)[MODULE_PATH_SIZE], const WCHAR* fileName);
