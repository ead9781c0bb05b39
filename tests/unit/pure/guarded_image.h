// Images for pixel tests: stored bottom-up as the library stores them, padding bytes 0xCC, and a run of
// guard bytes before the first and after the last row.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "image/pixels/bits_view.h"
#include "tests/reference/painting_reference.h"

constexpr size_t GUARD = 256;
constexpr uint8_t PADDING = 0xCC;

struct GuardedImage {
    int width, height;
    size_t stride;
    std::vector<uint8_t> bytes;

    BitsView view() { return {bytes.data() + GUARD + stride * (height - 1), -(ptrdiff_t)stride, width, height}; }
};

inline GuardedImage imageOf(const reference::Picture& picture)
{
    GuardedImage image = {picture.width, picture.height, (size_t)rowStride(picture.width, 24), {}};
    image.bytes.assign(image.stride * picture.height + 2 * GUARD, PADDING);
    const std::vector<uint8_t> rows = storedRows(picture, PADDING);
    memcpy(image.bytes.data() + GUARD, rows.data(), rows.size());
    return image;
}

struct GuardedMap {
    int width, height;
    size_t stride;
    std::vector<uint8_t> bytes;

    MapView view() { return {bytes.data() + GUARD + stride * (height - 1), -(ptrdiff_t)stride, width, height}; }
};

inline GuardedMap mapOf(const reference::Grid& grid)
{
    GuardedMap map = {grid.width, grid.height, (size_t)rowStride(grid.width, 8), {}};
    map.bytes.assign(map.stride * grid.height + 2 * GUARD, PADDING);
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x)
            rowOf(map.view(), y)[x] = (uint8_t)grid.at(x, y);
    return map;
}

// Seeded; the same numbers in every build.
struct Dice {
    uint64_t state;

    uint32_t next()
    {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return (uint32_t)(state >> 33);
    }
    int upTo(int last) { return (int)(next() % (uint32_t)(last + 1)); }
    int between(int first, int last) { return first + upTo(last - first); }
};

inline reference::Picture randomPicture(Dice& dice, int width, int height)
{
    reference::Picture picture(width, height);
    for (reference::Pixel& pixel : picture.pixels)
        pixel = {dice.upTo(255), dice.upTo(255), dice.upTo(255)};
    return picture;
}

inline reference::Picture plainPicture(int width, int height, reference::Pixel pixel)
{
    return {width, height, pixel};
}

inline reference::Grid plainGrid(int width, int height, int value)
{
    return {width, height, std::vector<int>((size_t)width * height, value)};
}
