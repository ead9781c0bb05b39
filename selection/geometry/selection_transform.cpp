#include "selection/geometry/selection_transform.h"

#include <cmath>

#include "image/pixels/pixel_rows.h"

// ---- points

static int atLeastOne(int value)
{
    return value < 1 ? 1 : value;
}

void movePoints(PixelPoint* points, int count, int dx, int dy)
{
    for (int n = 0; n < count; ++n)
        points[n] = PixelPoint{atLeastOne(points[n].x + dx), atLeastOne(points[n].y + dy)};
}

static int scaled(int offset, int64_t to, int from)
{
    return from ? (int)(offset * to / from) : 0;
}

void scalePoints(const PixelPoint* points, int count, PixelRect reference, PixelRect target, PixelPoint* result)
{
    const PointBox box = boxOfPoints(points, count);
    const int left = target.left + (box.minX - reference.left), right = target.right - reference.right + box.maxX;
    const int top = target.top + (box.minY - reference.top), bottom = target.bottom - reference.bottom + box.maxY;
    for (int n = 0; n < count; ++n) {
        const PixelPoint p = points[n];
        result[n].x = left + scaled(p.x - box.minX, (int64_t)right - left, box.maxX - box.minX);
        result[n].y = top + scaled(p.y - box.minY, (int64_t)bottom - top, box.maxY - box.minY);
    }
}

void flipPointsVertically(PixelPoint* points, int count)
{
    const PointBox box = boxOfPoints(points, count);
    for (int n = 0; n < count; ++n)
        points[n].y = box.maxY - (points[n].y - box.minY);
}

void flipPointsHorizontally(PixelPoint* points, int count)
{
    const PointBox box = boxOfPoints(points, count);
    for (int n = 0; n < count; ++n)
        points[n].x = box.maxX - (points[n].x - box.minX);
}

Turn turnAbout(PointBox box, int degrees)
{
    const double angle = degrees * 3.1415926 / 180;  // this many digits: turned outlines depend on it
    return Turn{(box.minX + box.maxX) / 2.0, (box.minY + box.maxY) / 2.0, cos(angle), sin(angle)};
}

struct PlanePoint {
    double x, y;
};

static PlanePoint turned(const Turn& turn, double x, double y)
{
    const double right = x - turn.centreX, up = turn.centreY - y;
    return PlanePoint{turn.centreX + turn.cosine * right - turn.sine * up,
                      turn.centreY - (turn.cosine * up + turn.sine * right)};
}

void turnPoints(const PixelPoint* points, int count, const Turn& turn, PixelPoint* result)
{
    for (int n = 0; n < count; ++n) {
        const PlanePoint p = turned(turn, points[n].x, points[n].y);
        result[n] = PixelPoint{(int)p.x, (int)p.y};
    }
}

// ---- pixels of a turned selection

static int roundedDown(double value)
{
    const int towardZero = (int)value;
    return towardZero - (towardZero > value);
}

static bool isInside(const PlacedImage& image, int column, int row)
{
    if (column < 0 || row < 0 || column >= image.mask.width || row >= image.mask.height) return false;
    return rowOf(image.mask, row)[(ptrdiff_t)column * 3 + 2] == 0;
}

static const uint8_t* pixelAt(const PlacedImage& image, int column, int row)
{
    return rowOf(image.pixels, row) + (ptrdiff_t)column * 3;
}

struct WeightedSum {
    double weight;
    double channels[3];
};

static void addPixel(WeightedSum& sum, const PlacedImage& source, int column, int row, double weight)
{
    if (weight <= 0 || !isInside(source, column, row)) return;
    const uint8_t* pixel = pixelAt(source, column, row);
    sum.weight += weight;
    for (int c = 0; c < 3; ++c)
        sum.channels[c] += weight * pixel[c];
}

// The nearest inside pixel to (x, y), by the straight distance; null beyond TURN_SEARCH rows or columns.
static const uint8_t* nearestInside(const PlacedImage& source, double x, double y)
{
    const int column = roundedDown(x + 0.5), row = roundedDown(y + 0.5);
    const uint8_t* nearest = nullptr;
    double best = 0;
    for (int v = row - TURN_SEARCH; v <= row + TURN_SEARCH; ++v) {
        for (int u = column - TURN_SEARCH; u <= column + TURN_SEARCH; ++u) {
            const double distance = (u - x) * (u - x) + (v - y) * (v - y);
            if ((nearest && distance >= best) || !isInside(source, u, v)) continue;
            nearest = pixelAt(source, u, v);
            best = distance;
        }
    }
    return nearest;
}

static void copyPixel(uint8_t* pixel, const uint8_t* from)
{
    for (int c = 0; c < 3; ++c)
        pixel[c] = from ? from[c] : 0;
}

static bool allFourInside(const PlacedImage& image, int column, int row)
{
    if (column < 0 || row < 0 || column + 1 >= image.mask.width || row + 1 >= image.mask.height) return false;
    const uint8_t *upper = rowOf(image.mask, row) + (ptrdiff_t)column * 3, *lower = upper + image.mask.stride;
    return (upper[2] | upper[5] | lower[2] | lower[5]) == 0;
}

// Nearly all pixels have four inside: the same sums, in the same order, without asking for each.
static void weighFour(uint8_t* pixel, const PlacedImage& source, int column, int row, double right, double below)
{
    const uint8_t *upper = pixelAt(source, column, row), *lower = upper + source.pixels.stride;
    const double a = (1 - right) * (1 - below), b = right * (1 - below), c = (1 - right) * below, d = right * below;
    const double weight = a + b + c + d;
    for (int n = 0; n < 3; ++n)
        pixel[n] = (uint8_t)((a * upper[n] + b * upper[n + 3] + c * lower[n] + d * lower[n + 3]) / weight + 0.5);
}

// x and y count pixels of the source from its top left pixel.
static void fetchPixel(uint8_t* pixel, const PlacedImage& source, double x, double y)
{
    const int column = roundedDown(x), row = roundedDown(y);
    const double right = x - column, below = y - row;
    if (allFourInside(source, column, row)) return weighFour(pixel, source, column, row, right, below);
    WeightedSum sum = {};
    addPixel(sum, source, column, row, (1 - right) * (1 - below));
    addPixel(sum, source, column + 1, row, right * (1 - below));
    addPixel(sum, source, column, row + 1, (1 - right) * below);
    addPixel(sum, source, column + 1, row + 1, right * below);
    if (sum.weight <= 0) {
        copyPixel(pixel, nearestInside(source, x, y));
        return;
    }
    for (int c = 0; c < 3; ++c)
        pixel[c] = (uint8_t)(sum.channels[c] / sum.weight + 0.5);
}

static void turnRun(const PlacedImage& target, int row, ptrdiff_t from, ptrdiff_t to, const PlacedImage& source,
                    const Turn& back)
{
    uint8_t* pixel = rowOf(target.pixels, row) + from * 3;
    for (ptrdiff_t column = from; column < to; ++column, pixel += 3) {
        const PlanePoint p = turned(back, target.rect.left + (double)column + 0.5, target.rect.top + row - 0.5);
        fetchPixel(pixel, source, p.x - 0.5 - source.rect.left, p.y + 0.5 - source.rect.top);
    }
}

static void turnRow(const PlacedImage& target, int row, const PlacedImage& source, const Turn& back)
{
    const uint8_t* const mask = rowOf(target.mask, row);
    const ptrdiff_t width = target.pixels.width;
    for (ptrdiff_t x = 0; x < width;) {
        const ptrdiff_t from = pixelRows().findMask(mask, x, width, true);
        pixelRows().fill(rowOf(target.pixels, row) + x * 3, 0, (size_t)(from - x) * 3);
        x = pixelRows().findMask(mask, from, width, false);
        turnRun(target, row, from, x, source, back);
    }
}

void turnPixels(const PlacedImage& target, const PlacedImage& source, const Turn& turn)
{
    const Turn back = {turn.centreX, turn.centreY, turn.cosine, -turn.sine};
    for (int row = 0; row < target.pixels.height; ++row)
        turnRow(target, row, source, back);
}
