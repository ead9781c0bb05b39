#include "canvas/view/view_pixels.h"

#include <algorithm>
#include <cstring>

namespace {

// Walks along an axis, from screen pixel to screen pixel.
struct Walk {
    int pixel;  // of the layer
    int part, screen, wholeStep, partStep;
};

Walk beginWalk(const ViewAxis& axis, int screen, int origin)
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
PixelRect shownRect(const ViewPicture& picture, const CanvasView& view, int width, int height, PixelPoint at)
{
    const PixelRect layer = deviceRectAt(view, {at.x, at.y, at.x + width, at.y + height});
    const PixelPoint corner = picture.corner;
    return {std::max(layer.left, corner.x), std::max(layer.top, corner.y),
            std::min(layer.right, corner.x + picture.pixels.width),
            std::min(layer.bottom, corner.y + picture.pixels.height)};
}

uint8_t* pixelAt(const ViewPicture& picture, int x, int y)
{
    return rowOf(picture.pixels, y - picture.corner.y) + 3 * (x - picture.corner.x);
}

void copyPixel(uint8_t* to, const uint8_t* from)
{
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
}

void showRow(uint8_t* to, int count, Walk walk, const uint8_t* from)
{
    for (; count > 0; --count, to += 3, step(walk))
        copyPixel(to, from + 3 * walk.pixel);
}

void showMaskedRow(uint8_t* to, int count, Walk walk, const uint8_t* from, const uint8_t* mask)
{
    for (; count > 0; --count, to += 3, step(walk))
        if (mask[3 * walk.pixel + 2] == 0) copyPixel(to, from + 3 * walk.pixel);
}

void showRowOfOnes(uint8_t* to, int count, Walk walk, const uint8_t* ones, Rgb colour)
{
    const uint8_t pixel[] = {colour.blue, colour.green, colour.red};
    for (; count > 0; --count, to += 3, step(walk))
        if (ones[walk.pixel / 8] & (0x80 >> walk.pixel % 8)) copyPixel(to, pixel);
}

}  // namespace

void showPixels(const ViewPicture& picture, const CanvasView& view, const BitsView& image, PixelPoint at)
{
    const PixelRect shown = shownRect(picture, view, image.width, image.height, at);
    const int count = shown.right - shown.left;
    if (count <= 0) return;
    const ViewAxes axes = viewAxes(view);
    const Walk across = beginWalk(axes.x, shown.left, at.x);
    Walk down = beginWalk(axes.y, shown.top, at.y);
    int above = -1;
    for (int y = shown.top; y < shown.bottom; ++y, step(down)) {
        uint8_t* const row = pixelAt(picture, shown.left, y);
        if (down.pixel == above) {
            memcpy(row, pixelAt(picture, shown.left, y - 1), (size_t)count * 3);
        } else {
            showRow(row, count, across, rowOf(image, down.pixel));
        }
        above = down.pixel;
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
