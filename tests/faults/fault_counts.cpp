#include "tests/faults/fault_counts.h"

#include <cstring>
#include <map>

static unsigned calls[256];
static std::vector<Fault> armed;
static std::vector<bool> struck;
static long books[KIND_COUNT];
static DWORD watchedThread;
static std::map<HGLOBAL, unsigned> blocks;  // and as the how manieth they were made
static unsigned made;

static bool watched()
{
    return GetCurrentThreadId() == watchedThread;
}

bool failsNow(int function)
{
    if (!watched()) return false;
    const unsigned call = calls[function]++;
    bool fails = false;
    for (size_t i = 0; i < armed.size(); ++i) {
        const Fault& fault = armed[i];
        if (fault.function != function || call < fault.call || (call > fault.call && !fault.persistent)) continue;
        struck[i] = fails = true;
    }
    if (fails) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return fails;
}

void watchThread(DWORD thread)
{
    watchedThread = thread;
}

void startCounting(const std::vector<Fault>& faults)
{
    memset(calls, 0, sizeof calls);
    armed = faults;
    struck.assign(faults.size(), false);
}

void disarm()
{
    armed.clear();
}

unsigned faultsStruck()
{
    unsigned count = 0;
    for (const bool hit : struck)
        count += hit;
    return count;
}

unsigned callsCounted(int function)
{
    return calls[function];
}

void book(Kind kind, int change)
{
    if (watched()) books[kind] += change;
}

void bookBlock(HGLOBAL block, int change)
{
    if (!watched()) return;
    if (change > 0) blocks[block] = made++;
    if (change < 0) blocks.erase(block);
}

unsigned blocksMade()
{
    return made;
}

std::vector<SIZE_T> sizesLeft(unsigned madeBefore)
{
    std::vector<SIZE_T> sizes;
    for (const auto& [block, number] : blocks)
        if (number >= madeBefore) sizes.push_back(GlobalSize(block));
    return sizes;
}

const char* kindName(int kind)
{
    static const char* const names[KIND_COUNT] = {"memory blocks", "graphics objects", "device contexts", "heap blocks",
                                                  "files",         "searches"};
    return names[kind];
}

long outstanding(int kind)
{
    return books[kind];
}
