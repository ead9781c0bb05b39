// 255 where the red of a pixel lies in a row, else 0.
#pragma once

#include <cstddef>
#include <cstdint>

template <size_t COUNT>
struct RedBytes {
    uint8_t at[COUNT];
};

template <size_t COUNT>
constexpr RedBytes<COUNT> makeRedBytes()
{
    RedBytes<COUNT> bytes = {};
    for (size_t i = 2; i < COUNT; i += 3)
        bytes.at[i] = 255;
    return bytes;
}
