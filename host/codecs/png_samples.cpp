#include "host/codecs/png_samples.h"

#include "host/photo/photo_rows.h"

#include <algorithm>
#include <cstring>

static void setSample(const PngLayout& layout, uint8_t* pixel, int channel, int value16)
{
    if (layout.depth == 16) {
        pixel[channel * 2] = (uint8_t)(value16 >> 8);
        pixel[channel * 2 + 1] = (uint8_t)value16;
    } else {
        const int most = (1 << layout.depth) - 1;
        pixel[channel] = (uint8_t)((value16 * most + 32767) / 65535);
    }
}

bool storePngColor(const PngRows& rows, const PngLayout& layout, const uint8_t* bgr, const uint8_t* editedBgr,
                   int alpha, uint8_t* to)
{
    if (layout.type == PNG_COLOR_TYPE_PALETTE) {
        for (size_t i = 0; i < rows.palette.size(); ++i) {
            const png_color& color = rows.palette[i];
            if (color.blue != bgr[0] || color.green != bgr[1] || color.red != bgr[2]) continue;
            if (rows.paletteAlpha[i] != 255) continue;
            to[0] = (uint8_t)i;
            return true;
        }
        return false;
    }
    const bool color = layout.type & PNG_COLOR_MASK_COLOR;
    if (!color && (editedBgr[0] != editedBgr[1] || editedBgr[0] != editedBgr[2])) return false;
    for (int channel = 0; channel < (color ? 3 : 1); ++channel) {
        const int value = fromOverWhite(bgr[2 - channel], alpha) * 257;
        setSample(layout, to, channel, value);
        const int most = (1 << std::min(layout.depth, 8)) - 1;
        if (layout.depth < 8 && to[channel] * (255 / most) != bgr[2 - channel]) return false;
    }
    return true;
}

void storePngPixel(const PngRows& rows, const PngLayout& layout, const uint8_t* native, const uint8_t* shown,
                   uint8_t* to)
{
    const PngLayout& from = rows.layout;
    if (from.type == layout.type && from.depth == layout.depth) {
        memcpy(to, native, (size_t)from.bytes);
        return;
    }
    const int last = layout.channels - 1;
    if (from.type == PNG_COLOR_TYPE_PALETTE) {
        const bool known = native[0] < rows.palette.size();
        const png_color color = known ? rows.palette[native[0]] : png_color{0, 0, 0};
        const int values[3] = {color.red, color.green, color.blue};
        for (int channel = 0; channel < 3; ++channel)
            setSample(layout, to, channel, values[channel] * 257);
    } else {
        for (int channel = 0; channel < std::min(layout.channels, 3); ++channel)
            setSample(layout, to, channel, pngSample(from, native, 0));
    }
    if (layout.type & PNG_COLOR_MASK_ALPHA)
        setSample(layout, to, last,
                  from.type & PNG_COLOR_MASK_ALPHA ? pngSample(from, native, from.channels - 1) : shown[3] * 257);
}
