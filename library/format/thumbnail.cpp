#include "library/format/thumbnail.h"

#include <cstring>

constexpr uint8_t BACKGROUND_GRAY = 192;

ThumbnailArea fitThumbnail(int width, int height)
{
    int64_t fittedWidth = THUMBNAIL_WIDTH;
    int64_t fittedHeight = (int64_t)THUMBNAIL_WIDTH * height / width;
    if (fittedHeight > THUMBNAIL_HEIGHT) {
        fittedHeight = THUMBNAIL_HEIGHT;
        fittedWidth = (int64_t)THUMBNAIL_HEIGHT * width / height;
    }
    const int left = (int)(THUMBNAIL_WIDTH - fittedWidth) / 2;
    const int top = (int)(THUMBNAIL_HEIGHT - fittedHeight) / 2;
    return {left, top, THUMBNAIL_WIDTH - 2 * left, THUMBNAIL_HEIGHT - 2 * top};
}

// The source position for one of `count` drawn positions: both ends meet. `count` is even, so never 1.
static int sourcePosition(int drawn, int count, int sourceLength)
{
    return (int)((int64_t)drawn * (sourceLength - 1) / (count - 1));
}

static void drawRow(uint8_t* rgb, const ThumbnailArea& area, const uint8_t* imageRow, const uint8_t* maskRow, int width)
{
    for (int x = 0; x < area.width; ++x) {
        const ptrdiff_t source = (ptrdiff_t)sourcePosition(x, area.width, width) * 3;
        const uint8_t* const maskPixel = maskRow + source;
        if (maskPixel[0] || maskPixel[1] || maskPixel[2]) continue;
        uint8_t* const out = rgb + (area.left + x) * 3;
        out[0] = imageRow[source + 2];
        out[1] = imageRow[source + 1];
        out[2] = imageRow[source];
    }
}

void drawThumbnail(uint8_t (&rgb)[THUMBNAIL_BYTES], const BitsView& image, const BitsView& mask)
{
    memset(rgb, BACKGROUND_GRAY, sizeof rgb);
    const ThumbnailArea area = fitThumbnail(image.width, image.height);
    for (int y = 0; y < area.height; ++y) {
        const int sourceRow = sourcePosition(y, area.height, image.height);
        uint8_t* const row = rgb + (area.top + y) * THUMBNAIL_WIDTH * 3;
        drawRow(row, area, rowOf(image, sourceRow), rowOf(mask, sourceRow), image.width);
    }
}
