// The retouching library beside the program: loading it, and what is wrong when it cannot be loaded.
#pragma once

#include "include/kovrtch32.h"

#include <string>

enum class LibraryFault { Missing, OtherBits, Damaged };

struct EditorLibrary {
    HMODULE module = nullptr;
    RetouchEntry retouch = nullptr;  // null: not loaded, and the rest tells why
    std::wstring faulty;             // the file that is to blame: KOVRTCH32.dll or what it needs, KOVCTRL32.dll
    LibraryFault fault = LibraryFault::Missing;
};

// From the program's own folder only, whatever the current one is. Released with FreeLibrary(module).
EditorLibrary loadLibraryBeside();

// The folder of the program, with its separator.
std::wstring programFolder();
