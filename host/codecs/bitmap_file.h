// Bitmap files. What has a byte for each channel is read here, and edited inside a copy of the file: only the bytes of
// edited pixels change. Other kinds are the system's to decode, and become plain ones.
#pragma once

#include "host/codecs/photo_codec.h"

// How the pixels lie in a file whose bytes can be changed one by one.
struct BitmapLayout {
    int width = 0, height = 0;
    bool topDown = false;
    int pixel = 0;               // bytes of one
    int place[4] = {};           // of blue, green, red and alpha in a pixel; -1: no alpha
    int64_t stride = 0, at = 0;  // bytes of a row; where the first one is
    long across = 0, down = 0;   // pixels a metre, 0: not told
};

// Fills *facts. False for other kinds of pixels. The file is at its start, and is there again afterwards.
bool openBitmap(FILE* file, BitmapLayout* layout, PhotoFacts* facts);

PhotoStatus readBitmap(FILE* file, const BitmapLayout& layout, const RowSink& sink, const PhotoFacts& facts);

// original: a bitmap file of such pixels and of the picture's size, or null for a plain new one.
PhotoStatus writeBitmap(FILE* output, const EditedPhoto& photo, const PhotoFacts& facts, FILE* original);

// One row as the file has it, as blue, green, red and straight alpha.
void showBitmapRow(const BitmapLayout& layout, const uint8_t* native, uint8_t* bgra);
