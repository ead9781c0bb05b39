// Pixel work for button pictures. No windows.
//
// A pixel is one 32-bit word 0xAARRGGBB, colours multiplied by alpha. Rows run top-down without gaps.
#pragma once

#include <stddef.h>
#include <stdint.h>

// Makes pixels of colour `key` (0x00RRGGBB) fully transparent and all others opaque; the top byte
// that comes in does not count.
void keyPixels(uint32_t* pixels, size_t count, uint32_t key);

// Whether any pixel's top byte is set: the picture brings its own transparency, colours multiplied by it.
bool hasAlpha(const uint32_t* pixels, size_t count);

// Puts a rim of one pixel of `colour` (0x00RRGGBB) behind the picture, so that dark outlines show on a dark face.
void rimPixels(const uint32_t* from, uint32_t* to, int width, int height, uint32_t colour);

// The look of a disabled picture: shades of grey, half transparent.
void greyPixels(uint32_t* pixels, size_t count);

// Scales a picture: an axis that shrinks averages the pixels it covers, one that grows blends the two
// nearest. Equal sizes copy. All sizes are at least 1 and at most 4096.
void scalePixels(const uint32_t* from, int fromWidth, int fromHeight, uint32_t* to, int toWidth, int toHeight);

struct PictureSize {
    int width, height;
};

// The size at which a picture is shown on a button that leaves `room` inside its frame. A picture no larger than
// the button keeps its size, so that every pixel is shown as it is, unless the room is at least 1.5 times as large.
// Otherwise the largest size of the same proportions that fits into the room, at least 1 x 1.
PictureSize fittedSize(PictureSize picture, PictureSize button, PictureSize room);
