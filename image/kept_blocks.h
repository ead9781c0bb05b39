// Large memory blocks of the library's own, kept for the next use instead of freed: the system takes ten times as
// long to bring fresh pages as it takes to copy their bytes. docs/performance.md tells the policy.
//
// A kept block serves the next request for just its size. What is kept and what is in use together never exceed
// what was in use at one time since the last release; nothing is kept while memory is short; and the session's
// end releases all. Blocks that did not come from here, the host's among them, are never kept.
//
// One thread at a time: the session's.
#pragma once

#include <windows.h>

// A movable block of `size` bytes, 1 or more, its bytes 0 or whatever they were. Null when memory is short, also
// after everything kept has been released. releaseBlock frees it, or GlobalFree when it was
// never shared.
HGLOBAL takeBlock(SIZE_T size);
HGLOBAL takeZeroedBlock(SIZE_T size);

// A block of any kind that is freed and never kept: GlobalAlloc, but what is kept goes before it fails.
HGLOBAL takeUnkeptBlock(UINT flags, SIZE_T size);

// One more owner of a block, none of whom changes it any more: a copy that costs nothing. Each releases it. False for
// small blocks, for those that did not come from here, and for more than a few at a time: they have to be copied.
bool shareBlock(HGLOBAL block);

// Frees any global memory block, or keeps it when it came from here; a shared one when it is the last owner's. A null
// handle does nothing.
void releaseBlock(HGLOBAL block);

// Frees everything that is kept, and forgets how much was in use.
void releaseKeptBlocks();

// Bytes, for tests and measurements.
SIZE_T keptBytes();
