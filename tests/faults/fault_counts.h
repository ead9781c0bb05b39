// What the calls of the watched thread are counted by, which of them fail, and the books of what they make and release.
#pragma once

#include <windows.h>

#include <vector>

// Only calls of this thread count, fail and are booked.
void watchThread(DWORD thread);

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

// Counts a call, and tells whether it is to fail; if so, the last error is set.
bool failsNow(int function);
unsigned callsCounted(int function);

// What was made and not yet released since the program began, by kind.
enum Kind { MEMORY_BLOCKS, GRAPHICS_OBJECTS, DEVICE_CONTEXTS, HEAP_BLOCKS, FILES, SEARCHES, KIND_COUNT };
const char* kindName(int kind);
void book(Kind kind, int change);
long outstanding(int kind);

// Memory blocks one by one: which they are.
void bookBlock(HGLOBAL block, int change);
unsigned blocksMade();
// Sizes of those of the blocks made behind the first so many that are still there.
std::vector<SIZE_T> sizesLeft(unsigned madeBefore);
