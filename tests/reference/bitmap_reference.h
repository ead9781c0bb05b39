// The bitmap rules done the slow and obvious way, one pixel at a time on vectors, to compare against.
// Rows count from the top. Shares no code with the library.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

struct ReferencePixel {
    uint8_t blue, green, red;
};

struct ReferenceImage {
    int width, height;
    std::vector<ReferencePixel> pixels;

    ReferenceImage(int w, int h) : width(w), height(h), pixels((size_t)w * h) {}
    ReferencePixel get(int x, int y) const { return pixels.at((size_t)y * width + x); }
    void set(int x, int y, ReferencePixel p) { pixels.at((size_t)y * width + x) = p; }
};

bool operator==(const ReferencePixel& a, const ReferencePixel& b);

ReferenceImage randomReference(std::mt19937& random, int width, int height);

// An image of random runs of black and white.
ReferenceImage randomMask(std::mt19937& random, int width, int height);

// Follows the stepwise rule for an extracted rectangle; an image of 0 by 0 stands for a failure.
ReferenceImage referenceExtract(const ReferenceImage& image, int left, int top, int right, int bottom);

// False when nothing of the source lies inside. The source's horizontal skip is in bytes.
bool referencePaste(ReferenceImage& destination, const ReferenceImage& source, int left, int top);

void referencePasteMasked(ReferenceImage& destination, const ReferenceImage& source, const ReferenceImage& mask,
                          int left, int top);
ReferenceImage referenceFlipVertical(const ReferenceImage& image);
ReferenceImage referenceFlipHorizontal(const ReferenceImage& image);

// The index table of nearest-neighbour scaling in 16-bit arithmetic; sizes up to 8192.
std::vector<int16_t> referenceNearestTable(int from, int to);
ReferenceImage referenceScale(const ReferenceImage& source, int width, int height);

// Stored form: bottom-up rows padded to 4 bytes with `padding`.
std::vector<uint8_t> storedRows(const ReferenceImage& image, uint8_t padding);
ReferenceImage fromStoredRows(const uint8_t* rows, int width, int height);
