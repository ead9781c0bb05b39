#include "image/kept_blocks.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "image/packed_bitmap.h"
#include "image/pixels/scarce_memory.h"
#include "tests/session/import_patch.h"

constexpr SIZE_T LARGE = 1 << 20, OTHER = 3 << 19;

class KeptBlocks : public testing::Test {
protected:
    void SetUp() override { releaseKeptBlocks(); }
    void TearDown() override { releaseKeptBlocks(); }
};

static void fill(HGLOBAL block, int value)
{
    memset(GlobalLock(block), value, GlobalSize(block));
    GlobalUnlock(block);
}

static bool isAll(HGLOBAL block, BYTE value)
{
    const BYTE* bytes = (const BYTE*)GlobalLock(block);
    SIZE_T i = 0;
    while (i < GlobalSize(block) && bytes[i] == value)
        ++i;
    GlobalUnlock(block);
    return i == GlobalSize(block);
}

TEST_F(KeptBlocks, ServeTheNextRequestForJustTheirSize)
{
    const HGLOBAL first = takeBlock(LARGE);
    ASSERT_TRUE(first);
    EXPECT_LE(LARGE, GlobalSize(first));
    releaseBlock(first);
    EXPECT_EQ(LARGE, keptBytes());
    const HGLOBAL other = takeBlock(LARGE - 16);
    EXPECT_NE(first, other);
    releaseBlock(other);
    const HGLOBAL again = takeBlock(LARGE - 16);
    EXPECT_EQ(other, again);
    EXPECT_EQ(0u, GlobalFlags(again) & GMEM_LOCKCOUNT);
    releaseBlock(again);
}

TEST_F(KeptBlocks, AreZeroWhenZeroesAreAskedFor)
{
    const HGLOBAL block = takeBlock(LARGE);
    fill(block, 0xA5);
    releaseBlock(block);
    const HGLOBAL zeroed = takeZeroedBlock(LARGE);
    EXPECT_EQ(block, zeroed);
    EXPECT_TRUE(isAll(zeroed, 0));
    releaseBlock(zeroed);
}

TEST_F(KeptBlocks, ABitmapFromAKeptBlockIsBlackWithAFreshHeader)
{
    const HGLOBAL old = createBitmap(600, 600, 24);
    fill(old, 0x77);
    releaseBlock(old);
    const HGLOBAL fresh = createBitmap(600, 600, 24);
    EXPECT_EQ(old, fresh);
    const BITMAPINFOHEADER* header = (const BITMAPINFOHEADER*)GlobalLock(fresh);
    const BITMAPINFOHEADER expected = {40, 600, 600, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    EXPECT_EQ(0, memcmp(&expected, header, sizeof expected));
    const BYTE* rows = (const BYTE*)(header + 1);
    for (SIZE_T i = 0; i < 600 * 1800; ++i)
        ASSERT_EQ(0, rows[i]);
    GlobalUnlock(fresh);
    releaseBlock(fresh);
}

// Whatever is taken and released, what is kept and used never exceeds the most that was in use at one time.
TEST_F(KeptBlocks, NeverExceedWhatWasInUseAtOneTime)
{
    SIZE_T used = 0, most = 0;
    uint32_t state = 7;
    HGLOBAL blocks[6] = {};
    SIZE_T sizes[6] = {};
    for (int step = 0; step < 400; ++step) {
        state = state * 1664525 + 1013904223;
        const int n = (int)(state >> 24) % 6;
        if (blocks[n]) {
            releaseBlock(blocks[n]);
            blocks[n] = nullptr;
            used -= sizes[n];
        } else {
            sizes[n] = LARGE + (state >> 8) % 5 * 65536;
            blocks[n] = takeBlock(sizes[n]);
            ASSERT_TRUE(blocks[n]);
            used += sizes[n];
            most = used > most ? used : most;
        }
        ASSERT_LE(used + keptBytes(), most) << "step " << step;
    }
    for (HGLOBAL block : blocks)
        releaseBlock(block);
    EXPECT_LT(0u, keptBytes());
}

TEST_F(KeptBlocks, AreGoneAfterTheRelease)
{
    const HGLOBAL block = takeBlock(LARGE), other = takeBlock(OTHER);
    releaseBlock(block);
    releaseKeptBlocks();
    EXPECT_EQ(0u, keptBytes());
    EXPECT_EQ((UINT)GMEM_INVALID_HANDLE, GlobalFlags(block));
    releaseBlock(other);  // taken before the release: freed, not kept
    EXPECT_EQ(0u, keptBytes());
    EXPECT_EQ((UINT)GMEM_INVALID_HANDLE, GlobalFlags(other));
}

// Fails as long as anything is kept.
static ImportPatch globalPatch, mallocPatch;

static HGLOBAL WINAPI globalAllocWhenNothingIsKept(UINT flags, SIZE_T size)
{
    return keptBytes() ? nullptr : ((decltype(&GlobalAlloc))globalPatch.before)(flags, size);
}

static void* mallocWhenNothingIsKept(size_t size)
{
    return keptBytes() ? nullptr : ((void* (*)(size_t))mallocPatch.before)(size);
}

TEST_F(KeptBlocks, AreGivenUpBeforeARequestFails)
{
    const HMODULE program = GetModuleHandleA(nullptr);
    ASSERT_TRUE(patchImport(&globalPatch, program, "GlobalAlloc", (void*)globalAllocWhenNothingIsKept));
    ASSERT_TRUE(patchImport(&mallocPatch, program, "malloc", (void*)mallocWhenNothingIsKept));
    releaseBlock(takeBlock(LARGE));
    const HGLOBAL large = takeBlock(OTHER);
    releaseBlock(takeBlock(LARGE));
    const HGLOBAL fixed = takeUnkeptBlock(GPTR, 1000);
    releaseBlock(takeBlock(LARGE));
    void* const memory = takeMemory(1000);
    EXPECT_EQ(0u, keptBytes());
    undoPatch(&mallocPatch);
    undoPatch(&globalPatch);
    EXPECT_TRUE(large);
    EXPECT_TRUE(fixed);
    EXPECT_TRUE(memory);
    free(memory);
    GlobalFree(fixed);
    releaseBlock(large);
}

TEST_F(KeptBlocks, AHostsBlockIsFreedAndNeverKept)
{
    const HGLOBAL ours = takeBlock(LARGE), hosts = GlobalAlloc(GMEM_MOVEABLE, LARGE);
    releaseBlock(hosts);
    EXPECT_EQ(0u, keptBytes());
    EXPECT_EQ((UINT)GMEM_INVALID_HANDLE, GlobalFlags(hosts));
    releaseBlock(ours);
    releaseBlock(nullptr);
}

TEST_F(KeptBlocks, SmallOnesAndChangedOnesAreFreed)
{
    releaseBlock(takeBlock(1000));
    HGLOBAL grown = takeBlock(LARGE);
    const HGLOBAL moved = GlobalReAlloc(grown, 2 * LARGE, GMEM_MOVEABLE);
    ASSERT_TRUE(moved);
    releaseBlock(moved);
    EXPECT_EQ(0u, keptBytes());
}

static HGLOBAL WINAPI noMemory(UINT, SIZE_T)
{
    return nullptr;
}

static SIZE_T keptAtRequest;
static int requests;
static HGLOBAL WINAPI memoryAtSecondTry(UINT flags, SIZE_T size)
{
    keptAtRequest = keptBytes();
    return ++requests == 1 ? nullptr : LocalAlloc(flags, size);
}

static BOOL WINAPI littleIsFree(MEMORYSTATUSEX* memory)
{
    memory->ullAvailPhys = memory->ullAvailVirtual = 1 << 20;
    return TRUE;
}

TEST_F(KeptBlocks, AreGivenUpWhenARequestFails)
{
    const HGLOBAL one = takeBlock(LARGE), two = takeBlock(OTHER);
    releaseBlock(one);
    releaseBlock(two);
    ImportPatch patch;
    requests = 0;
    ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), "GlobalAlloc", (void*)memoryAtSecondTry));
    const HGLOBAL third = takeBlock(LARGE + OTHER);
    undoPatch(&patch);
    EXPECT_TRUE(third);
    EXPECT_EQ(2, requests);
    EXPECT_EQ(0u, keptAtRequest);  // at the second try
    releaseBlock(third);
    ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), "GlobalAlloc", (void*)noMemory));
    EXPECT_EQ(nullptr, takeBlock(2 * LARGE));
    undoPatch(&patch);
    EXPECT_EQ(0u, keptBytes());
}

// What the C runtime's own functions do while nothing is kept; until then a large request fails.
static bool isRefused(size_t bytes)
{
    return bytes >= LARGE && keptBytes() > 0;
}

static void* refusingMalloc(size_t bytes)
{
    return isRefused(bytes) ? nullptr : HeapAlloc(GetProcessHeap(), 0, bytes);
}

static void* refusingCalloc(size_t count, size_t bytes)
{
    return isRefused(count * bytes) ? nullptr : HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, count * bytes);
}

static void* refusingRealloc(void* memory, size_t bytes)
{
    if (isRefused(bytes)) return nullptr;
    return memory ? HeapReAlloc(GetProcessHeap(), 0, memory, bytes) : HeapAlloc(GetProcessHeap(), 0, bytes);
}

struct RefusedRequest {
    const char* function;
    void* standIn;
    void* (*request)();
};
static const RefusedRequest refusedRequests[] = {
    {"malloc", (void*)refusingMalloc, [] { return takeMemory(LARGE); }},
    {"calloc", (void*)refusingCalloc, [] { return takeZeroedMemory(2, LARGE); }},
    {"realloc", (void*)refusingRealloc, [] { return resizeMemory(nullptr, LARGE); }},
};

TEST_F(KeptBlocks, AreGivenUpWhenMemoryWithoutAHandleIsRefused)
{
    for (const RefusedRequest& refused : refusedRequests) {
        releaseBlock(takeBlock(LARGE));
        ASSERT_EQ(LARGE, keptBytes());
        ImportPatch patch;
        ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), refused.function, refused.standIn));
        void* const memory = refused.request();
        undoPatch(&patch);
        EXPECT_TRUE(memory) << refused.function;
        EXPECT_EQ(0u, keptBytes()) << refused.function;
        if (memory) HeapFree(GetProcessHeap(), 0, memory);
    }
}

TEST_F(KeptBlocks, NothingIsKeptWhileMemoryIsShort)
{
    const HGLOBAL block = takeBlock(LARGE);
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), "GlobalMemoryStatusEx", (void*)littleIsFree));
    releaseBlock(block);
    undoPatch(&patch);
    EXPECT_EQ(0u, keptBytes());
}

static bool isFreed(HGLOBAL block)
{
    return GlobalFlags(block) == GMEM_INVALID_HANDLE;
}

TEST_F(KeptBlocks, ASharedBlockIsTheLastOwnersToRelease)
{
    const HGLOBAL block = takeBlock(LARGE);
    ASSERT_TRUE(shareBlock(block) && shareBlock(block));
    releaseBlock(block);
    releaseBlock(block);
    EXPECT_EQ(0u, keptBytes());
    EXPECT_FALSE(isFreed(block));
    EXPECT_NE(block, takeBlock(LARGE));
    releaseBlock(block);
    EXPECT_EQ(LARGE, keptBytes());
    EXPECT_EQ(block, takeBlock(LARGE));
    EXPECT_EQ(0u, keptBytes());
}

TEST_F(KeptBlocks, SmallAndForeignBlocksAreNotShared)
{
    const HGLOBAL small = takeBlock(1000), hosts = GlobalAlloc(GMEM_MOVEABLE, LARGE);
    EXPECT_FALSE(shareBlock(small));
    EXPECT_FALSE(shareBlock(hosts));
    EXPECT_FALSE(shareBlock(nullptr));
    GlobalFree(small);
    GlobalFree(hosts);
}

// Only so many blocks are known. Those whose owners have to be counted stay known, however many others come.
TEST_F(KeptBlocks, OwnersAreNotForgottenWhateverElseIsTaken)
{
    std::vector<HGLOBAL> shared, others;
    for (HGLOBAL block; shareBlock(block = takeBlock(LARGE)); shared.push_back(block))
        ASSERT_LT(shared.size(), 100u);
    EXPECT_GE(shared.size(), 10u);
    for (int n = 0; n < 100; ++n)
        others.push_back(takeBlock(LARGE));
    for (const HGLOBAL block : others)
        releaseBlock(block);
    for (const HGLOBAL block : shared) {
        releaseBlock(block);
        ASSERT_FALSE(isFreed(block));
        releaseBlock(block);
    }
    releaseKeptBlocks();
    for (const HGLOBAL block : shared)
        EXPECT_TRUE(isFreed(block));
}
