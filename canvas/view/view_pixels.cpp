#include "canvas/view/view_pixels.h"

#include <algorithm>
#include <cstring>

// Walks along an axis, from screen pixel to screen pixel.
struct Walk {
    int pixel;  // of the layer
    int part, screen, wholeStep, partStep;
};

static Walk beginWalk(const ViewAxis& axis, int screen, int origin)
{
    const int64_t position = (int64_t)screen * axis.image + axis.offset - (int64_t)origin * axis.screen;
    return {(int)(position / axis.screen), (int)(position % axis.screen), axis.screen, axis.image / axis.screen,
            axis.image % axis.screen};
}

inline void step(Walk& walk)
{
    walk.pixel += walk.wholeStep;
    walk.part += walk.partStep;
    if (walk.part < walk.screen) return;
    walk.part -= walk.screen;
    ++walk.pixel;
}

// The client rectangle in which the picture shows a layer; positions in it are never in front of the layer.
static PixelRect shownRect(const ViewPicture& picture, const CanvasView& view, int width, int height, PixelPoint at)
{
    const PixelRect layer = deviceRectAt(view, {at.x, at.y, at.x + width, at.y + height});
    const PixelPoint corner = picture.corner;
    return {std::max(layer.left, corner.x), std::max(layer.top, corner.y),
            std::min(layer.right, corner.x + picture.pixels.width),
            std::min(layer.bottom, corner.y + picture.pixels.height)};
}

static uint8_t* pixelAt(const ViewPicture& picture, int x, int y)
{
    return rowOf(picture.pixels, y - picture.corner.y) + 3 * (x - picture.corner.x);
}

static void copyPixel(uint8_t* to, const uint8_t* from)
{
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
}

// ---- whole pictures: the same columns in every row

// So many screen pixels of a row show one pixel of the image.
struct ColumnRun {
    int pixel, count;
};

// A row, or a part of it as wide as there is room for. The runs up to `quick` end far enough before the part's end
// that whole words may be written and read; those behind are copied pixel by pixel.
struct Columns {
    static constexpr int ROOM = 1024;
    ColumnRun runs[ROOM];
    int count, quick, width;
    bool oneToOne;
};

constexpr int WORD_PIXELS = 3;  // more than what is written beyond a run of a pixel

static void markQuick(Columns& columns)
{
    int rest = 0;
    columns.quick = columns.count;
    while (columns.quick > 0 && rest < WORD_PIXELS)
        rest += columns.runs[--columns.quick].count;
}

static Columns beginColumns(Walk& walk, int width)
{
    Columns columns;
    columns.oneToOne = walk.wholeStep == 1 && walk.partStep == 0;
    columns.count = 0;
    columns.width = std::min(width, Columns::ROOM);
    for (int i = 0; i < columns.width; ++i, step(walk)) {
        ColumnRun* const last = columns.count ? &columns.runs[columns.count - 1] : nullptr;
        if (last && last->pixel == walk.pixel) {
            ++last->count;
        } else {
            columns.runs[columns.count++] = {walk.pixel, 1};
        }
    }
    markQuick(columns);
    return columns;
}

// Two pixels at a time, each time a word of 8 bytes, of which what is too much is written anew by what follows.
inline void showQuickRun(uint8_t* to, int count, const uint8_t* pixel)
{
    uint32_t bytes;
    memcpy(&bytes, pixel, sizeof bytes);
    const uint64_t one = bytes & 0xFFFFFF, two = one | one << 24;
    for (; count > 0; count -= 2, to += 6)
        memcpy(to, &two, sizeof two);
}

static void showRow(uint8_t* to, const Columns& columns, const uint8_t* from)
{
    if (columns.oneToOne) {
        memcpy(to, from + 3 * (ptrdiff_t)columns.runs[0].pixel, (size_t)columns.width * 3);
        return;
    }
    for (int i = 0; i < columns.quick; ++i) {
        const ColumnRun& run = columns.runs[i];
        showQuickRun(to, run.count, from + 3 * (ptrdiff_t)run.pixel);
        to += 3 * (ptrdiff_t)run.count;
    }
    for (int i = columns.quick; i < columns.count; ++i) {
        for (int k = 0; k < columns.runs[i].count; ++k, to += 3)
            copyPixel(to, from + 3 * (ptrdiff_t)columns.runs[i].pixel);
    }
}

static void showMaskedRow(uint8_t* to, int count, Walk walk, const uint8_t* from, const uint8_t* mask)
{
    for (; count > 0; --count, to += 3, step(walk))
        if (mask[3 * walk.pixel + 2] == 0) copyPixel(to, from + 3 * walk.pixel);
}

static void showRowOfOnes(uint8_t* to, int count, Walk walk, const uint8_t* ones, Rgb colour)
{
    const uint8_t pixel[] = {colour.blue, colour.green, colour.red};
    for (; count > 0; --count, to += 3, step(walk))
        if (ones[walk.pixel / 8] & (0x80 >> walk.pixel % 8)) copyPixel(to, pixel);
}

// All rows of some columns; one that shows the same as the one above is copied from there.
static void showColumns(const ViewPicture& picture, const PixelRect& shown, const BitsView& image, Walk down,
                        const Columns& columns)
{
    int above = -1;
    for (int y = shown.top; y < shown.bottom; ++y, step(down)) {
        uint8_t* const row = pixelAt(picture, shown.left, y);
        if (down.pixel == above) {
            memcpy(row, pixelAt(picture, shown.left, y - 1), (size_t)columns.width * 3);
        } else {
            showRow(row, columns, rowOf(image, down.pixel));
        }
        above = down.pixel;
    }
}

void showPixels(const ViewPicture& picture, const CanvasView& view, const BitsView& image, PixelPoint at)
{
    PixelRect shown = shownRect(picture, view, image.width, image.height, at);
    const ViewAxes axes = viewAxes(view);
    Walk across = beginWalk(axes.x, shown.left, at.x);
    const Walk down = beginWalk(axes.y, shown.top, at.y);
    while (shown.left < shown.right) {
        const Columns columns = beginColumns(across, shown.right - shown.left);
        showColumns(picture, shown, image, down, columns);
        shown.left += columns.width;
    }
}

void showMaskedPixels(const ViewPicture& picture, const CanvasView& view, const BitsView& image, const BitsView& mask,
                      PixelPoint at)
{
    const int width = std::min(image.width, mask.width), height = std::min(image.height, mask.height);
    const PixelRect shown = shownRect(picture, view, width, height, at);
    const ViewAxes axes = viewAxes(view);
    const Walk across = beginWalk(axes.x, shown.left, at.x);
    Walk down = beginWalk(axes.y, shown.top, at.y);
    for (int y = shown.top; y < shown.bottom; ++y, step(down)) {
        showMaskedRow(pixelAt(picture, shown.left, y), shown.right - shown.left, across, rowOf(image, down.pixel),
                      rowOf(mask, down.pixel));
    }
}

void showOnes(const ViewPicture& picture, const CanvasView& view, const MonoView& ones, PixelPoint at, Rgb colour)
{
    const PixelRect shown = shownRect(picture, view, ones.width, ones.height, at);
    const ViewAxes axes = viewAxes(view);
    const Walk across = beginWalk(axes.x, shown.left, at.x);
    Walk down = beginWalk(axes.y, shown.top, at.y);
    for (int y = shown.top; y < shown.bottom; ++y, step(down)) {
        showRowOfOnes(pixelAt(picture, shown.left, y), shown.right - shown.left, across,
                      ones.row0 + (ptrdiff_t)ones.stride * down.pixel, colour);
    }
}
