// The rows of a PNG file with its own samples, and how they are seen.
#pragma once

#include "host/codecs/color_bridge.h"
#include "host/codecs/photo_codec.h"

#include <csetjmp>
#include <png.h>

// How one pixel lies in a row: 8 or 16 bits a sample (big-endian); smaller depths are unpacked to 8.
struct PngLayout {
    int type = PNG_COLOR_TYPE_RGB;
    int depth = 8;  // as the file says it: 1, 2, 4, 8, 16
    int channels = 3;
    int bytes = 3;  // a pixel's
};
PngLayout pngLayout(int type, int depth);

struct PngRows {
    png_structp input = nullptr;
    png_infop info = nullptr;
    size_t mostAtOnce = 0;  // bytes of memory that the library gets in one piece
    int width = 0, height = 0;
    PngLayout layout;
    std::vector<png_color> palette;
    std::vector<uint8_t> paletteAlpha;  // as many as the palette
    bool hasKey = false;                // one colour counts as transparent
    uint16_t key[3] = {};               // in the file's own depth
    ColorBridge bridge;
    LargeBytes whole;  // all rows, when they have to be at hand at once; else null
    int nextRow = 0;
    bool noMemory = false;  // why it does not open, or has no next row
};

// Reads what stands before the pixels, and takes no memory for them. False when it is no sound PNG file.
bool openPng(PngRows* rows, FILE* file, PhotoFacts* facts);
// Gets ready for the rows. atOnce: they are wanted in any order.
bool startPngRows(PngRows* rows, bool atOnce);
void closePngRows(PngRows* rows);

// The next row's samples; null when the file is damaged.
const uint8_t* nextPngRow(PngRows* rows, std::vector<uint8_t>* buffer);

// A sample as 16 bits, whatever the depth.
int pngSample(const PngLayout& layout, const uint8_t* pixel, int channel);

// A row as it is seen, before it is laid over white.
void showPngRow(const PngRows& rows, const uint8_t* native, uint8_t* bgra);
