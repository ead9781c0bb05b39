// The tone table: what contrast and brightness do to one channel value.
#pragma once

#include <cstdint>

// Fills the 256 entries with the line i * (a + 64) / 191 + (b - a), clamped to 0..255; the division
// truncates towards zero. a = b = 127 gives the identity. Returns 1.
int buildToneTable(uint8_t table[256], int a, int b);
