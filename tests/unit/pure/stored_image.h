// Pictures of the reference as the library stores them.
#pragma once

#include <gtest/gtest.h>

#include "image/pixels/pixel_ops.h"
#include "tests/reference/bitmap_reference.h"

constexpr uint8_t ROW_PADDING = 0xCC;

// Stored rows in a heap block of exactly their size, so that the sanitizer sees one byte too far.
struct StoredImage {
    int width, height;
    std::vector<uint8_t> rows;

    StoredImage(int w, int h) : width(w), height(h), rows((size_t)(rowStride(w, 24) * h), ROW_PADDING) {}
    explicit StoredImage(const reference::Picture& picture)
        : width(picture.width), height(picture.height), rows(storedRows(picture, ROW_PADDING))
    {
        rows.shrink_to_fit();
    }
    BitsView view() { return bottomUpView(rows.data(), width, height, (ptrdiff_t)rowStride(width, 24)); }
    reference::Picture picture() const { return reference::fromStoredRows(rows.data(), width, height); }
};

// Picture and padding are what the reference says.
inline void expectImage(const reference::Picture& expected, const StoredImage& actual)
{
    EXPECT_EQ(storedRows(expected, ROW_PADDING), actual.rows);
}
