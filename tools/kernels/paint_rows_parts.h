// A part of a vector's bytes, for vectors without masks.
//
// No ordinary header: included before paint_rows_lanes.h.
#pragma once

LANES_INLINE Vector loadBetween(const uint8_t* at, int from, int to)
{
    uint8_t bytes[VECTOR_SIZE] = {};
    for (int i = from; i < to; ++i)
        bytes[i] = at[i];
    return load(bytes);
}

LANES_INLINE void storeBetween(uint8_t* at, Vector vector, int from, int to)
{
    uint8_t bytes[VECTOR_SIZE];
    store(bytes, vector);
    for (int i = from; i < to; ++i)
        at[i] = bytes[i];
}
