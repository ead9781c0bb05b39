#include "tests/reference/tiff_reference.h"

ReferenceSelection randomSelection(unsigned seed, int width, int height)
{
    std::mt19937 random(seed);
    ReferenceSelection selection(width, height);
    selection.image = randomReference(random, width, height);
    selection.mask = randomMask(random, width, height);
    selection.imageXPelsPerMetre = (int)(random() % 20000);
    selection.imageYPelsPerMetre = (int)(random() % 20000);
    selection.maskXPelsPerMetre = (int)(random() % 20000);
    selection.maskYPelsPerMetre = (int)(random() % 20000);
    return selection;
}

std::vector<uint8_t> referenceThumbnail(const ReferenceSelection& selection)
{
    const int w = selection.image.width, h = selection.image.height;
    int fittedWidth = 40, fittedHeight = 40 * h / w;
    if (fittedHeight > 30) {
        fittedHeight = 30;
        fittedWidth = 30 * w / h;
    }
    const int mx = (40 - fittedWidth) >> 1, my = (30 - fittedHeight) >> 1;
    std::vector<uint8_t> rgb(3600, 192);
    for (int y = my; y < 30 - my; ++y) {
        for (int x = mx; x < 40 - mx; ++x) {
            const int sx = (x - mx) * (w - 1) / (40 - 2 * mx - 1);
            const int sy = (y - my) * (h - 1) / (30 - 2 * my - 1);
            const reference::Pixel m = selection.mask.at(sx, sy);
            if (m.red != 0 || m.green != 0 || m.blue != 0) continue;
            const reference::Pixel p = selection.image.at(sx, sy);
            rgb[(y * 40 + x) * 3] = p.red;
            rgb[(y * 40 + x) * 3 + 1] = p.green;
            rgb[(y * 40 + x) * 3 + 2] = p.blue;
        }
    }
    return rgb;
}

struct File {
    std::vector<uint8_t> bytes;
    bool bigEndian;

    void number(uint32_t value, int size)
    {
        for (int i = 0; i < size; ++i) {
            const int shift = bigEndian ? 8 * (size - 1 - i) : 8 * i;
            bytes.push_back((uint8_t)(value >> shift));
        }
    }
    void entry(uint32_t tag, uint32_t type, uint32_t count, uint32_t value)
    {
        number(tag, 2);
        number(type, 2);
        number(count, 4);
        if (type == 3 && count == 1) {  // a SHORT takes the first two bytes of the field
            number(value, 2);
            number(0, 2);
        } else {
            number(value, 4);
        }
    }
    void three8()
    {
        for (int i = 0; i < 3; ++i)
            number(8, 2);
    }
    void rational(int pixelsPerMetre)
    {
        number((uint32_t)((pixelsPerMetre * 254 + 127) / 10000), 4);
        number(1, 4);
    }
    void add(const std::vector<uint8_t>& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }
};

static void directory(File& file, uint32_t subfile, uint32_t w, uint32_t h, uint32_t bitsCount, uint32_t bits,
                      uint32_t photometric, uint32_t strip, uint32_t samples, uint32_t rowsPerStrip,
                      uint32_t stripBytes, uint32_t xResolution, uint32_t next)
{
    file.number(13, 2);
    file.entry(254, 4, 1, subfile);
    file.entry(256, 3, 1, w);
    file.entry(257, 3, 1, h);
    file.entry(258, 3, bitsCount, bits);
    file.entry(259, 3, 1, 1);
    file.entry(262, 3, 1, photometric);
    file.entry(273, 4, 1, strip);
    file.entry(277, 3, 1, samples);
    file.entry(278, 3, 1, rowsPerStrip);
    file.entry(279, 4, 1, stripBytes);
    file.entry(282, 5, 1, xResolution);
    file.entry(283, 5, 1, xResolution + 8);
    file.entry(296, 3, 1, 2);
    file.number(next, 4);
}

std::vector<uint8_t> referenceTiff(const ReferenceSelection& selection, bool bigEndian)
{
    const uint32_t w = (uint32_t)selection.image.width, h = (uint32_t)selection.image.height;
    const uint32_t maskBytes = (w + 7) / 8 * h;
    const uint32_t p2 = 192 + 3 * w * h;
    const uint32_t p3 = p2 + 178 + maskBytes;

    File file = {{}, bigEndian};
    file.bytes = {(uint8_t)(bigEndian ? 'M' : 'I'), (uint8_t)(bigEndian ? 'M' : 'I')};
    file.number(42, 2);
    file.number(8, 4);
    directory(file, 0, w, h, 3, 170, 2, 192, 3, h, 3 * w * h, 176, p2);
    file.three8();
    file.rational(selection.imageXPelsPerMetre);
    file.rational(selection.imageYPelsPerMetre);
    for (const reference::Pixel& p : selection.image.pixels)
        file.add({(uint8_t)p.red, (uint8_t)p.green, (uint8_t)p.blue});

    directory(file, 4, w, h, 1, 1, 4, p2 + 178, 1, h, maskBytes, p2 + 162, p3);
    file.rational(selection.maskXPelsPerMetre);
    file.rational(selection.maskYPelsPerMetre);
    for (uint32_t y = 0; y < h; ++y) {
        std::vector<uint8_t> row((w + 7) / 8);
        for (uint32_t x = 0; x < w; ++x) {
            if (selection.mask.at((int)x, (int)y).red) row[x / 8] |= (uint8_t)(1 << (7 - x % 8));
        }
        file.add(row);
    }

    directory(file, 1, 40, 30, 3, p3 + 162, 2, p3 + 184, 3, h, 3600, p3 + 168, 0);
    file.three8();
    file.rational(selection.maskXPelsPerMetre);
    file.rational(selection.maskYPelsPerMetre);
    file.add(referenceThumbnail(selection));
    return file.bytes;
}
