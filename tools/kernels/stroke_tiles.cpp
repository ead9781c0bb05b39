#include "tools/kernels/stroke_tiles.h"

#include <algorithm>
#include <cstring>

#include "tools/kernels/dab_placement.h"
#include "tools/kernels/digital_line.h"

static int tilesAcross(int pixels)
{
    return (pixels + STROKE_TILE - 1) / STROKE_TILE;
}

size_t strokeTileCount(int width, int height)
{
    return (size_t)tilesAcross(width) * (size_t)tilesAcross(height);
}

static PixelRect insideOf(const PixelRect& rect, const PixelRect& limits)
{
    return {std::max(rect.left, limits.left), std::max(rect.top, limits.top), std::min(rect.right, limits.right),
            std::min(rect.bottom, limits.bottom)};
}

static PixelRect wholeOf(const BitsView& view)
{
    return {0, 0, view.width, view.height};
}

static bool isEmpty(const PixelRect& rect)
{
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

static PixelRect tilesUnder(const PixelRect& pixels)
{
    return {pixels.left / STROKE_TILE, pixels.top / STROKE_TILE, tilesAcross(pixels.right), tilesAcross(pixels.bottom)};
}

static PixelRect pixelsOfTile(int column, int row)
{
    const int left = column * STROKE_TILE, top = row * STROKE_TILE;
    return {left, top, left + STROKE_TILE, top + STROKE_TILE};
}

static void keepTile(const StrokeStart& start, const BitsView& image, const PixelRect& tile)
{
    const size_t cells = (size_t)(tile.right - tile.left);
    const ptrdiff_t at = (ptrdiff_t)tile.left * 3;
    for (int y = tile.top; y < tile.bottom; ++y) {
        memcpy(rowOf(start.pixels, y) + at, rowOf(image, y) + at, cells * 3);
        if (start.coverage.row0) memset(rowOf(start.coverage, y) + tile.left, 0, cells);
    }
}

void keepTiles(const StrokeStart& start, const BitsView& image, const PixelRect& rect)
{
    const PixelRect painted = insideOf(rect, wholeOf(image));
    if (isEmpty(painted)) return;
    const PixelRect tiles = tilesUnder(painted);
    const int columns = tilesAcross(image.width);
    for (int row = tiles.top; row < tiles.bottom; ++row) {
        for (int column = tiles.left; column < tiles.right; ++column) {
            uint8_t& kept = start.keptTile[(size_t)row * (size_t)columns + (size_t)column];
            if (!kept) keepTile(start, image, insideOf(pixelsOfTile(column, row), wholeOf(image)));
            kept = 1;
        }
    }
}

static PixelRect dabsBetween(PixelPoint one, PixelPoint other, int brushWidth, int brushHeight)
{
    const PixelPoint corner = {std::min(one.x, other.x), std::min(one.y, other.y)};
    const PixelPoint opposite = {std::max(one.x, other.x), std::max(one.y, other.y)};
    const PixelRect first = dabRect(corner, brushWidth, brushHeight, 1);
    const PixelRect last = dabRect(opposite, brushWidth, brushHeight, 1);
    return {first.left, first.top, last.right, last.bottom};
}

// In pieces of a tile's length, because the rectangle around a long slanting line is mostly empty.
void keepTilesAlong(const StrokeStart& start, const BitsView& image, PixelPoint from, PixelPoint to, int brushWidth,
                    int brushHeight)
{
    DigitalLine line = beginLine(from, to);
    PixelPoint pieceStart = from;
    int points = 0;
    bool more;
    do {
        const PixelPoint here = {line.x, line.y};
        more = nextPoint(line);
        if (more && ++points < STROKE_TILE) continue;
        keepTiles(start, image, dabsBetween(pieceStart, here, brushWidth, brushHeight));
        pieceStart = here;
        points = 0;
    } while (more);
}

static void copyPart(const BitsView& patch, const BitsView& source, const PixelRect& part, int left, int top)
{
    for (int y = part.top; y < part.bottom; ++y) {
        memcpy(rowOf(patch, y - top) + (ptrdiff_t)(part.left - left) * 3, rowOf(source, y) + (ptrdiff_t)part.left * 3,
               (size_t)(part.right - part.left) * 3);
    }
}

static PixelRect around(const PixelRect& one, const PixelRect& other)
{
    if (isEmpty(one)) return other;
    return {std::min(one.left, other.left), std::min(one.top, other.top), std::max(one.right, other.right),
            std::max(one.bottom, other.bottom)};
}

PixelRect putBackTiles(const StrokeStart& start, const BitsView& image)
{
    PixelRect changed = {0, 0, 0, 0};
    const int columns = tilesAcross(image.width), rows = tilesAcross(image.height);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (!start.keptTile[(size_t)row * (size_t)columns + (size_t)column]) continue;
            const PixelRect tile = insideOf(pixelsOfTile(column, row), wholeOf(image));
            copyPart(image, start.pixels, tile, 0, 0);
            changed = around(changed, tile);
        }
    }
    return changed;
}

void copyFromStart(const BitsView& patch, const BitsView& image, const StrokeStart& start, int left, int top)
{
    const PixelRect cut = {left, top, left + patch.width, top + patch.height};
    const PixelRect tiles = tilesUnder(cut);
    const int columns = tilesAcross(image.width);
    for (int row = tiles.top; row < tiles.bottom; ++row) {
        for (int column = tiles.left; column < tiles.right; ++column) {
            const bool kept = start.keptTile[(size_t)row * (size_t)columns + (size_t)column] != 0;
            copyPart(patch, kept ? start.pixels : image, insideOf(pixelsOfTile(column, row), cut), left, top);
        }
    }
}
