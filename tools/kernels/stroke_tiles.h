// The image as it was when a stroke began, kept tile by tile: nothing is copied at the press, and a tile of
// 64 x 64 pixels just before the stroke first paints in it.
#pragma once

#include <cstddef>

#include "image/pixels/bits_view.h"

constexpr int STROKE_TILE = 64;

// Bytes of the marks for an image of that size, one a tile. All 0 when a stroke begins.
size_t strokeTileCount(int width, int height);

// All views have the image's size.
struct StrokeStart {
    BitsView pixels;    // right in kept tiles only
    MapView coverage;   // zeroed tile by tile, too; row0 null when the tool keeps none
    uint8_t* keptTile;  // marks, row by row from the top
};

// Keeps the tiles under a rectangle, which may reach beyond the image.
void keepTiles(const StrokeStart& start, const BitsView& image, const PixelRect& rect);

// Keeps the tiles under all dabs of a brush between two points.
void keepTilesAlong(const StrokeStart& start, const BitsView& image, PixelPoint from, PixelPoint to, int brushWidth,
                    int brushHeight);

// Puts the kept tiles back into the image: it is as it was when the stroke began. The rectangle around them, empty
// when none was kept.
PixelRect putBackTiles(const StrokeStart& start, const BitsView& image);

// Fills the patch with the image as it was when the stroke began, from (left, top) on; all of the patch lies
// inside the image.
void copyFromStart(const BitsView& patch, const BitsView& image, const StrokeStart& start, int left, int top);
