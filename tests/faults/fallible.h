// Calls of the two libraries that can be made to fail. Every import of theirs that may fail some day is replaced by a
// stub, which counts, keeps the books of what was made and released, and fails when it is told to (fault_counts.h).
#pragma once

#include <windows.h>

// Replaces the imports of a loaded module; may be called for several modules. Never undone.
void replaceImports(HMODULE module);

// From the next replaceImports on the modules call this function instead, as if it were the system's.
void standIn(const char* name, void* function);

int fallibleCount();
const char* fallibleName(int function);
int fallibleNamed(const char* name);  // -1 when there is none

// How often it was called since startCounting; 0 when it is never made to fail.
unsigned callsOf(int function);
