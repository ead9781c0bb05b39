// Single dabs of the tools that lay them without a coverage map, at 2000 places of an image.
#include "bench/keys.h"

#include <cstring>

#include "bench/synthetic.h"
#include "tools/kernels/brush_raster.h"
#include "tools/kernels/dab_placement.h"
#include "tools/kernels/patch_kernel.h"
#include "tools/kernels/rubber_kernels.h"
#include "tools/kernels/spray_kernels.h"
#include "session/ground/tool_table.h"

enum DabWork { PATCH, HARD_RUBBER, SOFT_RUBBER, HARD_SPRAY, SOFT_SPRAY };

constexpr int SIZE = 48, WIDTH = 3000, HEIGHT = 2000, OPACITY = 50, DABS = 2000;
static const Rgb COLOUR = rgbFromColorref(0x00C0C0FF);

static BenchPicture image, start, original, patch;
static uint8_t cells[SIZE * SIZE];
static const MapView mask = {cells + SIZE * (SIZE - 1), -SIZE, SIZE, SIZE};

static void releaseDabs(int)
{
    freePicture(&image);
    freePicture(&start);
    freePicture(&original);
    freePicture(&patch);
}

static bool prepareDabs(int)
{
    image = makePicture(WIDTH, HEIGHT);
    start = makePicture(WIDTH, HEIGHT);
    original = makePicture(WIDTH, HEIGHT);
    patch = makePicture(SIZE, SIZE);
    if (!image.bytes || !start.bytes || !original.bytes || !patch.bytes) return false;
    fillPhoto(start.view, 1);
    fillPhoto(original.view, 2);
    fillPhoto(patch.view, 3);
    rasteriseBrush(mask, SHAPE_CIRCLE);
    return true;
}

static void restoreImage(int)
{
    memcpy(image.bytes, start.bytes, start.byteCount);
}

static void layDab(int work, const DabPlacement& dab)
{
    switch (work) {
    case PATCH: return patchKernel(image.view, dab, mask, patch.view, OPACITY);
    case HARD_RUBBER: return hardRubberKernel(image.view, dab, mask, original.view, OPACITY);
    case SOFT_RUBBER: return softRubberKernel(image.view, dab, mask, original.view, OPACITY);
    case HARD_SPRAY: return hardSprayKernel(image.view, dab, mask, COLOUR, OPACITY);
    case SOFT_SPRAY: return softSprayKernel(image.view, dab, mask, COLOUR, OPACITY);
    }
}

static bool layDabs(int work)
{
    for (uint32_t k = 0; k < DABS; ++k) {
        const int left = (int)(hashPoint(k, 1, 11) % (WIDTH - SIZE)),
                  top = (int)(hashPoint(k, 2, 11) % (HEIGHT - SIZE));
        layDab(work, placeDab({left, top, left + SIZE, top + SIZE}, SIZE, SIZE, WIDTH, HEIGHT));
    }
    return true;
}

static uint32_t crcOfDabs(int)
{
    return crcOfImage(image.view);
}

static const BenchKey keys[] = {
    {"patch_48", "dabs/s", DABS, PATCH, prepareDabs, restoreImage, layDabs, crcOfDabs, releaseDabs},
    {"rubber_hard_48", "dabs/s", DABS, HARD_RUBBER, prepareDabs, restoreImage, layDabs, crcOfDabs, releaseDabs},
    {"rubber_soft_48", "dabs/s", DABS, SOFT_RUBBER, prepareDabs, restoreImage, layDabs, crcOfDabs, releaseDabs},
    {"spray_hard_48", "dabs/s", DABS, HARD_SPRAY, prepareDabs, restoreImage, layDabs, crcOfDabs, releaseDabs},
    {"spray_soft_48", "dabs/s", DABS, SOFT_SPRAY, prepareDabs, restoreImage, layDabs, crcOfDabs, releaseDabs},
};

const BenchGroup dabKeys = {keys, sizeof keys / sizeof keys[0]};
