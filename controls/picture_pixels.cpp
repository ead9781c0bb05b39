#include "controls/picture_pixels.h"

#include <string.h>

void keyPixels(uint32_t* pixels, size_t count, uint32_t key)
{
    for (size_t i = 0; i < count; ++i) {
        const uint32_t colour = pixels[i] & 0x00FFFFFF;
        pixels[i] = colour == key ? 0 : 0xFF000000 | colour;
    }
}

bool hasAlpha(const uint32_t* pixels, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        if (pixels[i] >> 24) return true;
    return false;
}

static uint32_t strongestAlphaAround(const uint32_t* pixels, int width, int height, int x, int y)
{
    uint32_t strongest = 0;
    for (int row = y > 0 ? y - 1 : 0; row <= y + 1 && row < height; ++row)
        for (int column = x > 0 ? x - 1 : 0; column <= x + 1 && column < width; ++column) {
            const uint32_t alpha = pixels[(ptrdiff_t)row * width + column] >> 24;
            if (alpha > strongest) strongest = alpha;
        }
    return strongest;
}

void rimPixels(const uint32_t* from, uint32_t* to, int width, int height, uint32_t colour)
{
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const uint32_t p = from[(ptrdiff_t)y * width + x];
            const uint32_t rim = strongestAlphaAround(from, width, height, x, y) * (255 - (p >> 24)) / 255;
            uint32_t result = p + (rim << 24);
            for (int shift = 0; shift < 24; shift += 8)
                result += (rim * (colour >> shift & 255) / 255) << shift;
            to[(ptrdiff_t)y * width + x] = result;
        }
}

void greyPixels(uint32_t* pixels, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        const uint32_t p = pixels[i];
        const uint32_t grey = ((p >> 16 & 255) * 77 + (p >> 8 & 255) * 150 + (p & 255) * 29) >> 9;
        pixels[i] = (p >> 25) << 24 | grey * 0x010101;
    }
}

// How one target position draws on source positions first .. last.
struct AxisSpan {
    int first, last;
};

static AxisSpan axisSpan(int i, int from, int to)
{
    if (from > to) return {(int)((int64_t)i * from / to), (int)(((int64_t)(i + 1) * from - 1) / to)};
    const int place = (2 * i + 1) * from + to;  // in 1 / (2 * to), one source pixel to the right
    const int first = place / (2 * to) - 1;
    return {first, first + 1};
}

static int64_t axisWeight(int i, int j, int from, int to)
{
    if (from > to) {
        const int left = j * to > i * from ? j * to : i * from;
        const int right = (j + 1) * to < (i + 1) * from ? (j + 1) * to : (i + 1) * from;
        return right - left;
    }
    const int place = (2 * i + 1) * from - to;
    const int distance = place > j * 2 * to ? place - j * 2 * to : j * 2 * to - place;
    return 2 * to - distance;
}

static int clampIndex(int j, int count)
{
    return j < 0 ? 0 : j >= count ? count - 1 : j;
}

void scalePixels(const uint32_t* from, int fromWidth, int fromHeight, uint32_t* to, int toWidth, int toHeight)
{
    if (fromWidth == toWidth && fromHeight == toHeight) {
        memcpy(to, from, (size_t)toWidth * toHeight * sizeof *to);
        return;
    }
    for (int y = 0; y < toHeight; ++y) {
        const AxisSpan rows = axisSpan(y, fromHeight, toHeight);
        for (int x = 0; x < toWidth; ++x) {
            const AxisSpan columns = axisSpan(x, fromWidth, toWidth);
            int64_t sums[4] = {}, total = 0;
            for (int row = rows.first; row <= rows.last; ++row) {
                const uint32_t* line = from + (ptrdiff_t)clampIndex(row, fromHeight) * fromWidth;
                const int64_t rowWeight = axisWeight(y, row, fromHeight, toHeight);
                for (int column = columns.first; column <= columns.last; ++column) {
                    const int64_t weight = rowWeight * axisWeight(x, column, fromWidth, toWidth);
                    const uint32_t p = line[clampIndex(column, fromWidth)];
                    for (int channel = 0; channel < 4; ++channel)
                        sums[channel] += weight * (p >> 8 * channel & 255);
                    total += weight;
                }
            }
            uint32_t result = 0;
            for (int channel = 0; channel < 4; ++channel)
                result |= (uint32_t)((sums[channel] + total / 2) / total) << 8 * channel;
            *to++ = result;
        }
    }
}

PictureSize fittedSize(PictureSize picture, PictureSize button, PictureSize room)
{
    if (room.width < 1) room.width = 1;
    if (room.height < 1) room.height = 1;
    const bool fits = picture.width <= button.width && picture.height <= button.height;
    const bool worthGrowing = 2 * room.width >= 3 * picture.width && 2 * room.height >= 3 * picture.height;
    if (fits && !worthGrowing) return picture;

    PictureSize size = {room.width, (int)((int64_t)picture.height * room.width / picture.width)};
    if (size.height > room.height) size = {(int)((int64_t)picture.width * room.height / picture.height), room.height};
    if (size.width < 1) size.width = 1;
    if (size.height < 1) size.height = 1;
    return size;
}
