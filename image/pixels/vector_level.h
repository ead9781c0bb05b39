// The one choice, made at run time, of the instructions that all vector code uses.
//
// Everything that is computed with vectors exists in a plain way too, which is its definition: all levels give
// the same bytes. Code keeps its variants in a table with one entry a level and takes the one of vectorLevel().
#pragma once

enum VectorLevel {
    VECTOR_PLAIN,   // byte by byte
    VECTOR_SSE2,    // 16 bytes; every processor that this library runs on
    VECTOR_AVX2,    // 32 bytes
    VECTOR_AVX512,  // 64 bytes, with byte permutations (F, BW, VL, VBMI)
    VECTOR_LEVEL_COUNT
};

// The level in use: the highest that the processor and the system know, unless the environment variable
// RETOUCH_VECTORS (plain, sse2, avx2, avx512) names a lower one, or a test has forced one.
VectorLevel vectorLevel();

// For tests. False, and nothing changed, when the processor or the compiler lacks the level.
bool forceVectorLevel(VectorLevel level);

bool vectorLevelSupported(VectorLevel level);
const char* vectorLevelName(VectorLevel level);

// Vector code is built where the compiler can make it for one function at a time.
#if defined(__GNUC__) && (defined(__i386__) || defined(__x86_64__)) && defined(__SSE2__)
#define VECTOR_CODE 1
#endif
