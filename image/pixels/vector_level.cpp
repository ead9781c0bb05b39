#include "image/pixels/vector_level.h"

#include <cstdlib>
#include <cstring>

static const char* const NAMES[VECTOR_LEVEL_COUNT] = {"plain", "sse2", "avx2", "avx512"};

bool vectorLevelSupported(VectorLevel level)
{
#ifdef VECTOR_CODE
    __builtin_cpu_init();
    switch (level) {
    case VECTOR_AVX2: return __builtin_cpu_supports("avx2");
    case VECTOR_AVX512:
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
               __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi");
    default: return level >= VECTOR_PLAIN && level < VECTOR_LEVEL_COUNT;
    }
#else
    return level == VECTOR_PLAIN;
#endif
}

const char* vectorLevelName(VectorLevel level)
{
    return NAMES[level];
}

static bool named(VectorLevel level, const char* name)
{
    return name && strcmp(name, NAMES[level]) == 0;
}

static VectorLevel firstChoice()
{
    const char* const wanted = getenv("RETOUCH_VECTORS");
    int level = VECTOR_LEVEL_COUNT - 1;
    while (level > VECTOR_PLAIN && !vectorLevelSupported((VectorLevel)level))
        --level;
    for (int lower = VECTOR_PLAIN; lower < level; ++lower)
        if (named((VectorLevel)lower, wanted)) level = lower;
    return (VectorLevel)level;
}

// Made once, when the program or the library is loaded, so that no thread has to wait for another.
static VectorLevel chosen = firstChoice();

VectorLevel vectorLevel()
{
    return chosen;
}

bool forceVectorLevel(VectorLevel level)
{
    if (!vectorLevelSupported(level)) return false;
    chosen = level;
    return true;
}
