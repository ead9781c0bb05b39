// A step of panning: the visible pixels of a zoomed canvas of 1000 x 700, from photos of two sizes, beside one copy of
// as many bytes.
#include "bench/keys.h"

#include <cstdlib>
#include <cstring>

#include "bench/synthetic.h"
#include "canvas/view/view_pixels.h"

constexpr int CANVAS_WIDTH = 1000, CANVAS_HEIGHT = 700;
constexpr double CANVAS_MP = 0.7;

struct PanSize {
    int width, height;
};
static const PanSize sizes[] = {{3000, 2000}, {8000, 6000}};

static BitsView photo, screen;
static CanvasView view;

static BitsView emptyView(int width, int height)
{
    const ptrdiff_t stride = (ptrdiff_t)rowStride(width, 24);
    return {(uint8_t*)calloc((size_t)height, (size_t)stride), stride, width, height};
}

static bool preparePan(int variant)
{
    photo = emptyView(sizes[variant].width, sizes[variant].height);
    screen = emptyView(CANVAS_WIDTH, CANVAS_HEIGHT);
    if (!photo.row0 || !screen.row0) return false;
    fillPhoto(photo, 1);
    view = fullSizeView(resizedView({}, {CANVAS_WIDTH, CANVAS_HEIGHT}, {photo.width, photo.height}));
    view = steppedAboutCentre(steppedAboutCentre(view, 1), 1);  // 200 %
    return true;
}

// There and back again, so that every run shows the same two views.
static bool pan(int)
{
    view = pannedView(view, 100, 60);
    showPixels({screen, {0, 0}}, view, photo, {0, 0});
    view = pannedView(view, -100, -60);
    showPixels({screen, {0, 0}}, view, photo, {0, 0});
    return true;
}

static uint32_t crcOfScreen(int)
{
    return crcOfImage(screen);
}

static bool copyScreen(int)
{
    memcpy(screen.row0, photo.row0, (size_t)screen.stride * CANVAS_HEIGHT);
    return true;
}

static void releasePan(int)
{
    free(photo.row0);
    free(screen.row0);
    photo = screen = {};
}

static const BenchKey keys[] = {
    {"pan_6mp", "MP/s", 2 * CANVAS_MP, 0, preparePan, nullptr, pan, crcOfScreen, releasePan},
    {"pan_48mp", "MP/s", 2 * CANVAS_MP, 1, preparePan, nullptr, pan, crcOfScreen, releasePan},
    {"copy_canvas", "MP/s", CANVAS_MP, 0, preparePan, nullptr, copyScreen, nullptr, releasePan},
};

const BenchGroup viewKeys = {keys, sizeof keys / sizeof keys[0]};
