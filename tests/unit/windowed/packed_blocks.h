// Bitmaps in memory blocks for tests: made of reference pictures, with bytes of their own at the rows' ends and a guard
// behind the last row.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <vector>

#include "tests/reference/bitmap_reference.h"

constexpr uint8_t PAD_BYTE = 0xCC;
constexpr uint8_t GUARD_BYTE = 0xA5;
constexpr size_t GUARD_BYTES = 64;

// A global block that is freed with its test, holding any bytes behind any header.
struct Block {
    HGLOBAL handle;

    explicit Block(HGLOBAL taken) : handle(taken) {}
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block()
    {
        if (handle) GlobalFree(handle);
    }
    std::vector<uint8_t> bytes() const
    {
        const uint8_t* start = (const uint8_t*)GlobalLock(handle);
        std::vector<uint8_t> copy(start, start + GlobalSize(handle));
        GlobalUnlock(handle);
        return copy;
    }
};

HGLOBAL blockOf(const std::vector<uint8_t>& bytes);

// A header, and rows behind it.
std::vector<uint8_t> withHeader(int width, int height, int bitCount, const std::vector<uint8_t>& rows,
                                unsigned headerSize = 40);

HGLOBAL packed(const reference::Picture& image, unsigned headerSize = 40, size_t guard = GUARD_BYTES);
reference::Picture unpacked(HGLOBAL handle);

// Everything from the first row to the guard: pixels, padding and the guard itself.
void expectStored(const reference::Picture& expected, HGLOBAL handle);

// The pixels only.
void expectPicture(const reference::Picture& expected, HGLOBAL handle);

bool isUnlocked(HGLOBAL handle);
