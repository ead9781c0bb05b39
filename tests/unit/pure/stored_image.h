// Images of the reference as the library stores them.
#pragma once

#include <gtest/gtest.h>

#include "image/pixels/pixel_ops.h"
#include "tests/reference/bitmap_reference.h"

constexpr uint8_t padByte = 0xCC;

// Stored rows in a heap block of exactly their size, so that the sanitizer sees one byte too far.
struct StoredImage {
    int width, height;
    std::vector<uint8_t> rows;

    explicit StoredImage(const ReferenceImage& image)
        : width(image.width), height(image.height), rows(storedRows(image, padByte))
    {
        rows.shrink_to_fit();
    }
    BitsView view() { return bottomUpView(rows.data(), width, height, (ptrdiff_t)rowStride(width, 24)); }
};

// Picture and padding are what the reference says.
inline void expectImage(const ReferenceImage& expected, const StoredImage& actual)
{
    EXPECT_EQ(storedRows(expected, padByte), actual.rows);
}
