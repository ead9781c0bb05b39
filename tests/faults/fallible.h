// Calls of the two libraries that can be made to fail. Every import of theirs that may fail some day is replaced by a
// stub, which counts, keeps the books of what was made and released, and fails when it is told to.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// Replaces the imports of a loaded module; may be called for several modules. Never undone.
void replaceImports(HMODULE module);

// From the next replaceImports on the modules call this function instead, as if it were the system's.
void standIn(const char* name, void* function);

// Only calls of this thread count, fail and are booked.
void watchThread(DWORD thread);

int fallibleCount();
const char* fallibleName(int function);
int fallibleNamed(const char* name);  // -1 when there is none

// A call that fails: the n-th one (from 0) of a function since startCounting, and if wanted all that follow.
struct Fault {
    int function;
    unsigned call;
    bool persistent;
};

// Sets the counters back and arms these faults.
void startCounting(const std::vector<Fault>& faults);
// Disarms; nothing fails any more, counting goes on.
void disarm();
// How many of the armed faults have struck at least once.
unsigned faultsStruck();
unsigned callsOf(int function);

// What was made and not yet released since the program began, by kind.
enum Kind { MEMORY_BLOCKS, GRAPHICS_OBJECTS, DEVICE_CONTEXTS, HEAP_BLOCKS, FILES, SEARCHES, KIND_COUNT };
const char* kindName(int kind);
long outstanding(int kind);
