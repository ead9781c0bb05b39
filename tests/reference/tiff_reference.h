// A selection file put together value by value from the tables of its layout, to compare against. Shares
// no code with the library.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/reference/bitmap_reference.h"

struct ReferenceSelection {
    reference::Picture image;
    reference::Picture mask;
    int imageXPelsPerMetre = 0, imageYPelsPerMetre = 0;
    int maskXPelsPerMetre = 0, maskYPelsPerMetre = 0;

    ReferenceSelection(int width, int height) : image(width, height), mask(width, height) {}
};

ReferenceSelection randomSelection(unsigned seed, int width, int height);

// 30 rows of 40 pixels, red, green, blue.
std::vector<uint8_t> referenceThumbnail(const ReferenceSelection& selection);

// The whole file; big-endian ("MM") files have the same structure with every number's bytes turned around.
std::vector<uint8_t> referenceTiff(const ReferenceSelection& selection, bool bigEndian = false);
