#include "image/kept_blocks.h"

#include <algorithm>
#include <cstring>

#include "image/pixels/scarce_memory.h"
#include "session/ground/locked_block.h"
#include "session/ground/session_extras.h"

constexpr SIZE_T LEAST_SIZE = 256 * 1024;  // smaller blocks come from the heap's own store
constexpr int MOST_SHARED = BlockList::ROOM / 2;
constexpr DWORDLONG LEAST_FREE = 256ull * 1024 * 1024;

static BlockList& used = sessionExtras.blocks.used;
static BlockList& kept = sessionExtras.blocks.kept;
static SIZE_T& mostUsed = sessionExtras.blocks.mostUsed;

static void append(BlockList& list, const BlockList::Entry& entry)
{
    list.entries[list.count++] = entry;
    list.bytes += entry.size;
}

static void removeAt(BlockList& list, int index)
{
    list.bytes -= list.entries[index].size;
    for (--list.count; index < list.count; ++index)
        list.entries[index] = list.entries[index + 1];
}

static int findBlock(const BlockList& list, HGLOBAL block)
{
    int index = list.count - 1;
    while (index >= 0 && list.entries[index].block != block)
        --index;
    return index;
}

static int findSize(const BlockList& list, SIZE_T size)
{
    int index = list.count - 1;
    while (index >= 0 && list.entries[index].size != size)
        --index;
    return index;
}

static void releaseOldest()
{
    GlobalFree(kept.entries[0].block);
    removeAt(kept, 0);
}

static void releaseAll()
{
    while (kept.count > 0)
        releaseOldest();
}

static bool giveUpKept()
{
    const bool any = kept.count > 0;
    releaseAll();
    return any;
}

static void keep(const BlockList::Entry& entry)
{
    append(kept, entry);
    giveUpReserve = giveUpKept;
}

static bool isShared(const BlockList::Entry& entry)
{
    return entry.owners > 1;
}

static int countShared()
{
    return (int)std::count_if(used.entries, used.entries + used.count, isShared);
}

// The oldest block is no longer known, and will be freed instead of kept. How many owners one has must not be
// forgotten.
static void forgetOldest()
{
    removeAt(used, (int)(std::find_if_not(used.entries, used.entries + used.count, isShared) - used.entries));
}

// A block freed behind our back may have left its handle, which the system gives out again.
static void noteUsed(HGLOBAL block, SIZE_T size)
{
    const int stale = findBlock(used, block);
    if (stale >= 0) removeAt(used, stale);
    if (used.count == BlockList::ROOM) forgetOldest();
    append(used, {block, size, GlobalSize(block), 1});
    if (used.bytes > mostUsed) mostUsed = used.bytes;
    while (kept.count > 0 && used.bytes + kept.bytes > mostUsed)
        releaseOldest();
}

static bool memoryIsShort()
{
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    return !GlobalMemoryStatusEx(&memory) || memory.ullAvailPhys < LEAST_FREE || memory.ullAvailVirtual < LEAST_FREE;
}

static bool zero(HGLOBAL block, SIZE_T size)
{
    const LockedBlock locked(block);
    if (locked) memset(locked.bytes, 0, size);
    return (bool)locked;
}

static HGLOBAL takeKept(UINT flags, SIZE_T size)
{
    const int index = findSize(kept, size);
    if (index < 0) return nullptr;
    const HGLOBAL block = kept.entries[index].block;
    removeAt(kept, index);
    if (!(flags & GMEM_ZEROINIT) || zero(block, size)) return block;
    GlobalFree(block);
    return nullptr;
}

static HGLOBAL take(UINT flags, SIZE_T size)
{
    if (size < LEAST_SIZE) return takeUnkeptBlock(flags, size);
    HGLOBAL block = takeKept(flags, size);
    if (!block) block = takeUnkeptBlock(flags, size);
    if (block) noteUsed(block, size);
    return block;
}

// Whether a block just taken off the used ones may be kept: as its owner left it, and within the bounds.
static bool mayKeep(const BlockList::Entry& entry)
{
    const bool whole = GlobalSize(entry.block) == entry.real && (GlobalFlags(entry.block) & GMEM_LOCKCOUNT) == 0;
    return whole && kept.count < BlockList::ROOM && used.bytes + kept.bytes + entry.size <= mostUsed &&
           !memoryIsShort();
}

HGLOBAL takeUnkeptBlock(UINT flags, SIZE_T size)
{
    const HGLOBAL block = GlobalAlloc(flags, size);
    return block || !giveUpKept() ? block : GlobalAlloc(flags, size);
}

HGLOBAL takeBlock(SIZE_T size)
{
    return take(GMEM_MOVEABLE, size);
}

HGLOBAL takeZeroedBlock(SIZE_T size)
{
    return take(GHND, size);
}

bool shareBlock(HGLOBAL block)
{
    const int index = findBlock(used, block);
    if (index < 0 || (!isShared(used.entries[index]) && countShared() == MOST_SHARED)) return false;
    ++used.entries[index].owners;
    return true;
}

void releaseBlock(HGLOBAL block)
{
    if (!block) return;
    const int index = findBlock(used, block);
    if (index < 0) {
        GlobalFree(block);
        return;
    }
    if (--used.entries[index].owners > 0) return;
    const BlockList::Entry entry = used.entries[index];
    removeAt(used, index);
    if (mayKeep(entry)) {
        keep(entry);
    } else {
        GlobalFree(block);
    }
}

void releaseKeptBlocks()
{
    releaseAll();
    used = {};
    mostUsed = 0;
}

SIZE_T keptBytes()
{
    return kept.bytes;
}
