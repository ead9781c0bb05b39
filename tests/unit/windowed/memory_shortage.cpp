#include "tests/unit/windowed/memory_shortage.h"

#include <gtest/gtest.h>

#include "tests/session/import_patch.h"

static int allocationsLeft;  // negative: as many as are wanted
static int allocationsMade;

static bool mayAllocate()
{
    ++allocationsMade;
    return allocationsLeft < 0 || allocationsLeft-- > 0;
}

static ImportPatch globalPatch, mallocPatch, reallocPatch;

static HGLOBAL WINAPI failingGlobalAlloc(UINT flags, SIZE_T bytes)
{
    if (!mayAllocate()) return nullptr;
    return ((HGLOBAL(WINAPI*)(UINT, SIZE_T))globalPatch.before)(flags, bytes);
}

static void* failingMalloc(size_t bytes)
{
    if (!mayAllocate()) return nullptr;
    return ((void* (*)(size_t))mallocPatch.before)(bytes);
}

static void* failingRealloc(void* block, size_t bytes)
{
    if (!mayAllocate()) return nullptr;
    return ((void* (*)(void*, size_t))reallocPatch.before)(block, bytes);
}

bool runShortOfMemory(int allocations, const std::function<void()>& operation)
{
    allocationsLeft = allocations;
    allocationsMade = 0;
    const HMODULE program = GetModuleHandleA(nullptr);
    EXPECT_TRUE(patchImport(&globalPatch, program, "GlobalAlloc", (void*)failingGlobalAlloc));
    EXPECT_TRUE(patchImport(&mallocPatch, program, "malloc", (void*)failingMalloc));
    EXPECT_TRUE(patchImport(&reallocPatch, program, "realloc", (void*)failingRealloc));
    operation();
    undoPatch(&reallocPatch);
    undoPatch(&mallocPatch);
    undoPatch(&globalPatch);
    return allocationsMade > allocations;
}
