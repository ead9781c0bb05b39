#include "host/photo/gif_canvas.h"

#include <cstring>

static int pairAt(const uint8_t* bytes)
{
    return bytes[0] | bytes[1] << 8;
}

// The place of the first picture's description; the size when there is none.
static size_t findPicture(const uint8_t* head, size_t size)
{
    size_t at = 13 + (head[10] & 0x80 ? 3u << ((head[10] & 7) + 1) : 0);
    while (at + 2 < size && head[at] == 0x21) {
        at += 2;
        while (at < size && head[at] != 0)
            at += head[at] + 1u;
        at++;
    }
    return at + 10 <= size && head[at] == 0x2C ? at : size;
}

GifCanvas gifCanvas(const uint8_t* head, size_t size, int width, int height)
{
    const GifCanvas plain = {width, height, 0, 0};
    if (size < 13 || memcmp(head, "GIF8", 4) != 0) return plain;
    const size_t at = findPicture(head, size);
    if (at == size) return plain;
    const GifCanvas canvas = {pairAt(head + 6), pairAt(head + 8), pairAt(head + at + 1), pairAt(head + at + 3)};
    const bool inside = canvas.left + width <= canvas.width && canvas.top + height <= canvas.height;
    return inside ? canvas : plain;
}
