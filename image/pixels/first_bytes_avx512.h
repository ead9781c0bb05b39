// Masks of the first bytes of a vector of 64: none for counts below 1, all from 64 on.
//
// No ordinary header: included behind image/pixels/words_avx512.h.
#pragma once

// From a table, because 32-bit code is slow at making 64 bits.
struct FirstBytes {
    static constexpr int LEAST = -128, MOST = 192;
    uint64_t mask[MOST - LEAST + 1];
};

constexpr FirstBytes makeFirstBytes()
{
    FirstBytes table = {};
    for (int count = 1; count <= FirstBytes::MOST; ++count)
        table.mask[count - FirstBytes::LEAST] = count >= 64 ? ~(uint64_t)0 : ((uint64_t)1 << count) - 1;
    return table;
}

constexpr FirstBytes FIRST_BYTES = makeFirstBytes();

// GCC would load a mask for 32-bit code in halves and join them by way of memory, for which the processor waits.
LANES_INLINE __mmask64 firstBytes(int count)
{
    __mmask64 mask;
    __asm__("kmovq %1, %0" : "=k"(mask) : "m"(FIRST_BYTES.mask[count - FirstBytes::LEAST]));
    return mask;
}
