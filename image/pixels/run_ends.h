// Runs of bytes for vectors without masks. The last vector overlaps the one before it; runs shorter than a vector go
// byte by byte.
//
// No ordinary header: included before image/pixels/pixel_rows_lanes.h.
#pragma once

VECTOR_FUNCTION void fill(uint8_t* to, uint8_t value, size_t count)
{
    if (count < VECTOR_SIZE) return fillPlain(to, value, count);
    const Vector bytes = allBytes(value);
    for (size_t i = 0; i + VECTOR_SIZE < count; i += VECTOR_SIZE)
        store(to + i, bytes);
    store(to + count - VECTOR_SIZE, bytes);
}

VECTOR_FUNCTION void copy(uint8_t* to, const uint8_t* from, size_t count)
{
    if (count < VECTOR_SIZE) return copyPlain(to, from, count);
    for (size_t i = 0; i + VECTOR_SIZE < count; i += VECTOR_SIZE)
        store(to + i, load(from + i));
    store(to + count - VECTOR_SIZE, load(from + count - VECTOR_SIZE));
}
