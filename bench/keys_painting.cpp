// Brush strokes and the blur.
#include "bench/keys.h"

#include <cstdlib>
#include <cstring>

#include "bench/synthetic.h"
#include "tools/kernels/brush_raster.h"
#include "tools/kernels/dab_placement.h"
#include "tools/kernels/digital_line.h"
#include "tools/kernels/smooth_kernel.h"
#include "tools/kernels/stroke_kernels.h"
#include "session/ground/tool_table.h"

struct BenchMap {
    uint8_t* bytes;
    size_t byteCount;
    MapView view;
};

static BenchMap makeMap(int width, int height)
{
    const int64_t stride = rowStride(width, 8);
    BenchMap map = {};
    map.byteCount = (size_t)(stride * height);
    map.bytes = (uint8_t*)calloc(map.byteCount, 1);
    if (map.bytes) map.view = MapView{map.bytes + stride * (height - 1), (ptrdiff_t)-stride, width, height};
    return map;
}

static void freeMap(BenchMap* map)
{
    free(map->bytes);
    *map = BenchMap{};
}

static BenchPicture image, start;
static BenchMap coverage, mask;

static void releasePainting(int)
{
    freePicture(&image);
    freePicture(&start);
    freeMap(&coverage);
    freeMap(&mask);
}

// The photo twice: to paint on, and to restore it from.
static bool preparePhotos(int width, int height)
{
    image = makePicture(width, height);
    start = makePicture(width, height);
    if (!image.bytes || !start.bytes) return false;
    fillPhoto(start.view, 1);
    memcpy(image.bytes, start.bytes, start.byteCount);
    return true;
}

static bool prepareRoundBrush(int size)
{
    mask = makeMap(size, size);
    if (!mask.bytes) return false;
    rasteriseBrush(mask.view, SHAPE_CIRCLE);
    return true;
}

// Variant of a stroke: the brush's size, negative for the Smooth edge.
static bool prepareStroke(int variant)
{
    coverage = makeMap(3000, 2000);
    return coverage.bytes && preparePhotos(3000, 2000) && prepareRoundBrush(abs(variant));
}

static void resetStroke(int)
{
    memcpy(image.bytes, start.bytes, start.byteCount);
    memset(coverage.bytes, 0, coverage.byteCount);
}

// Chosen so that the digital line has no ties on them.
static const PixelPoint corners[] = {{100, 100}, {2901, 1899}, {2898, 100}, {97, 1901}, {100, 98}};

static BrushStroke strokeOf(int variant)
{
    return {image.view, start.view, coverage.view, mask.view, rgbFromColorref(0x00C0C0FF), 50, variant < 0};
}

static bool paintStroke(int variant)
{
    const BrushStroke stroke = strokeOf(variant);
    for (int k = 0; k < 4; ++k)
        paintBrushSegment(stroke, corners[k], corners[k + 1]);
    return true;
}

// The same way as real pointers send it: a piece of 3 to 12 points at a time, the next one from where it ended.
static void paintPieces(const BrushStroke& stroke, PixelPoint from, PixelPoint to, uint32_t* piece)
{
    DigitalLine line = beginLine(from, to);
    PixelPoint pieceStart = from;
    bool more = true;
    while (more) {
        const int points = 3 + (int)(hashPoint((*piece)++, 5, 9) % 10);
        for (int k = 1; more && k < points; ++k)
            more = nextPoint(line);
        const PixelPoint pieceEnd = {line.x, line.y};
        paintBrushSegment(stroke, pieceStart, pieceEnd);
        pieceStart = pieceEnd;
    }
}

static bool paintStrokeInPieces(int variant)
{
    const BrushStroke stroke = strokeOf(variant);
    uint32_t piece = 0;
    for (int k = 0; k < 4; ++k)
        paintPieces(stroke, corners[k], corners[k + 1], &piece);
    return true;
}

static uint32_t crcOfPainted(int)
{
    return crcOfImage(image.view);
}

static bool prepareBlur(int)
{
    if (!preparePhotos(6000, 4000) || !inputIsRight(start.view, PHOTO1_6000X4000)) return false;
    mask = makeMap(6000, 4000);
    if (!mask.bytes) return false;
    memset(mask.bytes, 1, mask.byteCount);
    return true;
}

static bool blurAll(int)
{
    return smoothKernel(image.view, placeDab({0, 0, 6000, 4000}, 6000, 4000, 6000, 4000), mask.view, 100);
}

static bool prepareBlurPatches(int size)
{
    return preparePhotos(3000, 2000) && prepareRoundBrush(size);
}

static void restoreImage(int)
{
    memcpy(image.bytes, start.bytes, start.byteCount);
}

static bool blurPatches(int size)
{
    for (uint32_t k = 0; k < 2000; ++k) {
        const int left = (int)(hashPoint(k, 1, 11) % 2952), top = (int)(hashPoint(k, 2, 11) % 1952);
        const DabPlacement dab = placeDab({left, top, left + size, top + size}, size, size, 3000, 2000);
        if (!smoothKernel(image.view, dab, mask.view, 100)) return false;
    }
    return true;
}

static const BenchKey keys[] = {
    {"dab_hard_48", "dabs/s", 9208, 48, prepareStroke, resetStroke, paintStroke, crcOfPainted, releasePainting},
    {"dab_soft_48", "dabs/s", 9208, -48, prepareStroke, resetStroke, paintStroke, crcOfPainted, releasePainting},
    {"dab_hard_16", "dabs/s", 9208, 16, prepareStroke, resetStroke, paintStroke, crcOfPainted, releasePainting},
    {"dab_soft_16", "dabs/s", 9208, -16, prepareStroke, resetStroke, paintStroke, crcOfPainted, releasePainting},
    // The four strokes in pieces of 3 to 12 points; what is counted are the points of the whole way.
    {"pieces_hard_48", "points/s", 9208, 48, prepareStroke, resetStroke, paintStrokeInPieces, crcOfPainted,
     releasePainting},
    {"pieces_soft_48", "points/s", 9208, -48, prepareStroke, resetStroke, paintStrokeInPieces, crcOfPainted,
     releasePainting},
    {"pieces_hard_16", "points/s", 9208, 16, prepareStroke, resetStroke, paintStrokeInPieces, crcOfPainted,
     releasePainting},
    {"pieces_soft_16", "points/s", 9208, -16, prepareStroke, resetStroke, paintStrokeInPieces, crcOfPainted,
     releasePainting},
    {"blur_24mp", "MP/s", 24, 0, prepareBlur, nullptr, blurAll, crcOfPainted, releasePainting},
    {"blur_patch_48", "patches/s", 2000, 48, prepareBlurPatches, restoreImage, blurPatches, crcOfPainted,
     releasePainting},
};

const BenchGroup paintingKeys = {keys, sizeof keys / sizeof keys[0]};
