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

// Does it some times, and fails the test when more than `allowed` of one kind are left behind. What the system makes
// once and keeps (a device context more, when a slow thread still holds the others) is no leak: several such spans are
// tried, and a leak shows in each.
void expectGivenBack(int times, int allowed, const std::function<void()>& deed);
