// What the process has in use, counted exactly, so that a test sees a single object that was not given back.
#pragma once

#include <windows.h>

#include <functional>

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

// Does it twice as often as told, and fails the test when each half left more than `allowed` of one kind behind. A leak
// does; what the system makes once and keeps (a device context more, when a slow thread still holds the others) is in
// one of the halves only.
void expectGivenBack(int timesInHalf, int allowed, const std::function<void()>& deed);
