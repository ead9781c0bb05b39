// Layout of a button picture table (RT_RCDATA resource), little-endian 16-bit words: the entry count,
// four times; then four words an entry: control id, and the bitmap ids of its three states (0 = none).
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int PICTURE_STATES = 3;

struct PictureEntry {
    uint16_t controlId;
    uint16_t bitmapIds[PICTURE_STATES];
};

// Number of entries that a table of `size` bytes really holds: its count, cut to what fits.
size_t pictureEntryCount(const void* table, size_t size);

// Entry `index`, 0-based, below pictureEntryCount.
PictureEntry pictureEntry(const void* table, size_t index);
