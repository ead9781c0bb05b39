// The pixels that a zoomed canvas shows: each screen pixel takes the image pixel that it hits, unsmoothed.
#pragma once

#include "canvas/view/view.h"

// A part of the canvas that is painted off screen.
struct ViewPicture {
    BitsView pixels;
    PixelPoint corner;  // the client point of its top left pixel
};

// Lays an image whose top left pixel lies at an image point over the picture. What it does not reach is left.
void showPixels(const ViewPicture& picture, const CanvasView& view, const BitsView& image, PixelPoint at);

// The same where a mask of the image's size has red 0.
void showMaskedPixels(const ViewPicture& picture, const CanvasView& view, const BitsView& image, const BitsView& mask,
                      PixelPoint at);

// A picture of one bit a pixel, the leftmost in the highest bit, rows from the top.
struct MonoView {
    const uint8_t* row0;
    int stride, width, height;
};

// Colours every screen pixel that shows a one.
void showOnes(const ViewPicture& picture, const CanvasView& view, const MonoView& ones, PixelPoint at, Rgb colour);
