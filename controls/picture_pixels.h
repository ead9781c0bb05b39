// Pixel work for button pictures. No windows.
//
// A pixel is one 32-bit word 0xAARRGGBB, colours multiplied by alpha. Rows run top-down without gaps.
#pragma once

#include <stddef.h>
#include <stdint.h>

// Makes pixels of colour `key` (0x00RRGGBB) fully transparent and all others opaque; the top byte
// that comes in does not count.
void keyPixels(uint32_t* pixels, size_t count, uint32_t key);

// The look of a disabled picture: shades of grey, half transparent.
void greyPixels(uint32_t* pixels, size_t count);

// Scales a picture: an axis that shrinks averages the pixels it covers, one that grows blends the two
// nearest. Equal sizes copy. All sizes are at least 1 and at most 4096.
void scalePixels(const uint32_t* from, int fromWidth, int fromHeight, uint32_t* to, int toWidth, int toHeight);

struct PictureSize {
    int width, height;
};

// The size at which a picture is shown in a room: the largest that fits with the same proportions, at
// least 1 x 1. Less than a quarter of growth is not worth the blur: the picture stays as it is.
PictureSize fittedSize(PictureSize picture, PictureSize room);
