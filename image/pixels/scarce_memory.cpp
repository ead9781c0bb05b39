#include "image/pixels/scarce_memory.h"

#include <cstdlib>

bool (*giveUpReserve)();

static bool canTryAgain(const void* memory)
{
    return !memory && giveUpReserve && giveUpReserve();
}

void* takeMemory(size_t bytes)
{
    void* const memory = malloc(bytes);
    return canTryAgain(memory) ? malloc(bytes) : memory;
}

void* takeZeroedMemory(size_t count, size_t bytesEach)
{
    void* const memory = calloc(count, bytesEach);
    return canTryAgain(memory) ? calloc(count, bytesEach) : memory;
}

void* resizeMemory(void* memory, size_t bytes)
{
    void* const resized = realloc(memory, bytes);
    return canTryAgain(resized) ? realloc(memory, bytes) : resized;
}
