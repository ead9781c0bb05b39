// The rows of a JPEG file as they are seen.
#pragma once

#include "host/codecs/color_bridge.h"
#include "host/codecs/jpeg_errors.h"

// Adobe's programs store inks as paper brightness, as most readers expect of everybody.
bool jpegInksAreInverted(const jpeg_decompress_struct& input);

// A JPEG file opened for its rows, upper first, blue, green, red and alpha (255).
struct JpegRows {
    jpeg_decompress_struct input;
    ColorBridge bridge;
    std::vector<uint8_t> inks;  // a row as the file has it, for CMYK only
    bool inverted;
};

// After jpeg_read_header. Jumps on errors, so it must be called below a setjmp.
void startJpegRows(JpegRows* rows);

// Reads up to count rows; gives how many.
int readJpegRows(JpegRows* rows, uint8_t* bgra, size_t stride, int count);
