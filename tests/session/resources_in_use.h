// What the process has in use, counted exactly, so that a test sees a single object that was not given back.
#pragma once

#include <windows.h>

// How many more objects of a kind the process could make: the system's tables are bounded.
int freeMemoryHandles();
int freeGraphicsHandles();

// Blocks that the module got from the C runtime since watchBlocks and has not freed. One module at a time.
bool watchBlocks(HMODULE module);
void stopWatchingBlocks();
int blocksInUse();

// One count means nothing, the difference of two does.
struct ResourcesInUse {
    int memoryHandles, graphicsHandles;
    int blocks;  // 0 when no module is watched
};

ResourcesInUse resourcesInUse();

// Fails the test when more than `allowed` of one kind are in use than before.
void expectGivenBack(const ResourcesInUse& before, int allowed);
