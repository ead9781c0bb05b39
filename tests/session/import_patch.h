// Replaces one imported function of a loaded module, so that a test can play a system that answers differently.
#pragma once

#include <windows.h>

struct ImportPatch {
    void** slot;
    void* before;
};

// False when the module does not import the function by that name.
bool patchImport(ImportPatch* patch, HMODULE module, const char* function, void* replacement);
void undoPatch(ImportPatch* patch);
