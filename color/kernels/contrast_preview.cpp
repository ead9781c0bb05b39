#include "color/kernels/contrast_preview.h"

static int scaled(int value, int by, int from)
{
    return (int)((int64_t)value * by / from);
}

PreviewSize previewSizeFor(int imageWidth, int imageHeight, int clientWidth, int clientHeight)
{
    const int64_t width = (int64_t)imageWidth * clientHeight / imageHeight;
    if (width <= clientWidth) return {(int)width, clientHeight};
    return {clientWidth, scaled(imageHeight, clientWidth, imageWidth)};
}

static int limited(int value, int size)
{
    return value < size ? value : size - 1;
}

static void sampleRow(uint8_t* target, int width, const uint8_t* source, int sourceWidth)
{
    for (int x = 0; x < width; ++x, target += 3) {
        const uint8_t* pixel = source + (ptrdiff_t)3 * limited(scaled(x, sourceWidth, width), sourceWidth);
        target[0] = pixel[0];
        target[1] = pixel[1];
        target[2] = pixel[2];
    }
}

void samplePreview(BitsView preview, BitsView image)
{
    for (int stored = 0; stored < preview.height; ++stored) {
        const int lagging = stored == 0 ? 0 : limited(scaled(stored - 1, image.height, preview.height), image.height);
        sampleRow(rowOf(preview, preview.height - 1 - stored), preview.width, rowOf(image, image.height - 1 - lagging),
                  image.width);
    }
}
