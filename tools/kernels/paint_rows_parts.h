// Less than a vector, or less than its pixels, for vectors without masks: by way of a copy.
//
// No ordinary header: included before paint_rows_lanes.h.
#pragma once

LANES_INLINE Vector loadFirst(const uint8_t* at, int count)
{
    uint8_t bytes[VECTOR_SIZE] = {};
    memcpy(bytes, at, (size_t)count);
    return load(bytes);
}
