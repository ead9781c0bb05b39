#include "image/pixels/scarce_memory.h"

#include <cstdlib>

bool (*giveUpReserve)();

void* takeMemory(size_t bytes)
{
    void* const memory = malloc(bytes);
    return memory || !giveUpReserve || !giveUpReserve() ? memory : malloc(bytes);
}
