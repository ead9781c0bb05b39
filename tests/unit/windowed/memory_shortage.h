// A system whose memory runs out in the middle of an operation.
#pragma once

#include <functional>

// Runs the operation with room for so many allocations only. True when it had wanted more.
bool runShortOfMemory(int allocations, const std::function<void()>& operation);
