#include "tests/session/resources_in_use.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <vector>

#include "tests/session/import_patch.h"

int freeMemoryHandles()
{
    std::vector<HGLOBAL> blocks;
    while (const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 0))
        blocks.push_back(block);
    for (HGLOBAL block : blocks)
        GlobalFree(block);
    return (int)blocks.size();
}

int freeGraphicsHandles()
{
    std::vector<HGDIOBJ> brushes;
    for (COLORREF colour = 0; const HGDIOBJ brush = CreateSolidBrush(colour); ++colour)
        brushes.push_back(brush);
    for (HGDIOBJ brush : brushes)
        DeleteObject(brush);
    return (int)brushes.size();
}

static std::atomic<int> blocks;

static void* counted(void* block)
{
    if (block) ++blocks;
    return block;
}

static void* countedMalloc(size_t bytes)
{
    return counted(malloc(bytes));
}

static void* countedCalloc(size_t count, size_t bytes)
{
    return counted(calloc(count, bytes));
}

static void* countedRealloc(void* block, size_t bytes)
{
    void* const moved = realloc(block, bytes);
    return block ? moved : counted(moved);
}

static void countedFree(void* block)
{
    if (block) --blocks;
    free(block);
}

static ImportPatch patches[4];
static const struct {
    const char* name;
    void* replacement;
} watched[4] = {{"malloc", (void*)countedMalloc},
                {"calloc", (void*)countedCalloc},
                {"realloc", (void*)countedRealloc},
                {"free", (void*)countedFree}};

bool watchBlocks(HMODULE module)
{
    blocks = 0;
    for (int i = 0; i < 4; ++i)
        if (!patchImport(&patches[i], module, watched[i].name, watched[i].replacement)) return false;
    return true;
}

void stopWatchingBlocks()
{
    for (ImportPatch& patch : patches)
        if (patch.slot) undoPatch(&patch);
}

int blocksInUse()
{
    return blocks;
}

// One count means nothing, the difference of two does.
struct ResourcesInUse {
    int memoryHandles, graphicsHandles;
    int blocks;  // 0 when no module is watched
};

static ResourcesInUse resourcesInUse()
{
    return {-freeMemoryHandles(), -freeGraphicsHandles(), blocksInUse()};
}

static int mostOf(const ResourcesInUse& counts)
{
    return std::max({counts.memoryHandles, counts.graphicsHandles, counts.blocks});
}

static ResourcesInUse leftBy(int times, const std::function<void()>& deed)
{
    const ResourcesInUse before = resourcesInUse();
    for (int i = 0; i < times; ++i)
        deed();
    const ResourcesInUse now = resourcesInUse();
    return {now.memoryHandles - before.memoryHandles, now.graphicsHandles - before.graphicsHandles,
            now.blocks - before.blocks};
}

void expectGivenBack(int times, int allowed, const std::function<void()>& deed)
{
    const int spans = 4;
    ResourcesInUse left = {};
    for (int span = 0; span < spans && (span == 0 || mostOf(left) > allowed); ++span) {
        left = leftBy(times, deed);
        if (testing::Test::HasFatalFailure()) return;
        printf("more in use: %d memory handles, %d graphics objects, %d blocks\n", left.memoryHandles,
               left.graphicsHandles, left.blocks);
    }
    EXPECT_LE(left.memoryHandles, allowed);
    EXPECT_LE(left.graphicsHandles, allowed);
    EXPECT_LE(left.blocks, allowed);
}
