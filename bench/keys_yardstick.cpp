// What this machine's memory does in the same run: the measure for everything that touches whole images.
#include "bench/keys.h"

#include <cstdlib>
#include <cstring>

constexpr size_t YARDSTICK_BYTES = 72000000;

static uint8_t *from, *to;

static bool prepareBuffers(int)
{
    from = (uint8_t*)malloc(YARDSTICK_BYTES);
    to = (uint8_t*)malloc(YARDSTICK_BYTES);
    if (!from || !to) return false;
    memset(from, 1, YARDSTICK_BYTES);
    memset(to, 2, YARDSTICK_BYTES);
    return true;
}

// Through volatile pointers, so that the compiler can neither drop nor merge the calls.
static void* (*volatile copyBytes)(void*, const void*, size_t) = memcpy;
static void* (*volatile setBytes)(void*, int, size_t) = memset;

static bool copyWarm(int)
{
    copyBytes(to, from, YARDSTICK_BYTES);
    return true;
}

static bool setWarm(int)
{
    setBytes(to, 3, YARDSTICK_BYTES);
    return true;
}

static void releaseBuffers(int)
{
    free(from);
    free(to);
    from = to = nullptr;
}

static const BenchKey keys[] = {
    {"copy_warm_24mp", "MP/s", 24, 0, prepareBuffers, nullptr, copyWarm, nullptr, releaseBuffers},
    {"set_warm_24mp", "MP/s", 24, 0, prepareBuffers, nullptr, setWarm, nullptr, releaseBuffers},
};

const BenchGroup yardstickKeys = {keys, sizeof keys / sizeof keys[0]};
