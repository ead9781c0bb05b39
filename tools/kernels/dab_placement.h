// Where a dab meets the image: which pixels it touches and which mask cells lie over them.
#pragma once

#include "image/pixels/bits_view.h"

// The dab's rectangle around a point: `scale` is 1, or 2 for a dab of twice the brush's size. Halves
// truncate, so an even brush reaches one pixel further to the left and top.
PixelRect dabRect(PixelPoint centre, int brushWidth, int brushHeight, int scale);

// Pixel (imageX + i, imageY + j) lies under mask cell (maskX + i, maskY + j), for i < width, j < height;
// all of these pixels lie inside the image and all of these cells inside the mask.
//
// A brush that hangs over both sides of an image narrower than itself is placed oddly, the same for every tool: its
// visible width is what the left overhang leaves, however far that reaches beyond the right side, and
// it starts at mask column 0. The same holds for rows. ruleWidth and ruleHeight keep that visible size,
// from which soft edges compute their falloff; width and height are what of it lies inside the image,
// and differ from it in this case only.
struct DabPlacement {
    bool visible;  // false: nothing to paint, the other members are 0 (but `clamped`)
    int imageX, imageY;
    int width, height;
    int maskX, maskY;
    int ruleWidth, ruleHeight;
    PixelRect clamped;  // the dab's rectangle cut to the image
    int left, top;      // the dab's corner, wherever it lies
};

// `dab` is the dab's rectangle in image pixels, of which left and top place the mask.
DabPlacement placeDab(PixelRect dab, int maskWidth, int maskHeight, int imageWidth, int imageHeight);

// Asks for the image's pixels under line j of the dab, if it has one; what a line asks for in time is DAB_LINES_AHEAD
// further on.
void fetchDabLine(const BitsView& image, const DabPlacement& dab, int j);
constexpr int DAB_LINES_AHEAD = 3;
