#include "color/kernels/tone_table.h"

static uint8_t clampToByte(int value)
{
    return (uint8_t)(value < 0 ? 0 : value > 255 ? 255 : value);
}

int buildToneTable(uint8_t table[256], int a, int b)
{
    for (int i = 0; i < 256; ++i) {
        table[i] = clampToByte(i * (a + 64) / 191 + (b - a));
    }
    return 1;
}
