#include "tests/reference/picture.h"

namespace reference {

bool operator==(const Pixel& a, const Pixel& b)
{
    return a.blue == b.blue && a.green == b.green && a.red == b.red;
}

bool operator!=(const Pixel& a, const Pixel& b)
{
    return !(a == b);
}

int strideOf(int width)
{
    return (width * 3 + 3) & ~3;
}

std::vector<uint8_t> storedRows(const Picture& picture, uint8_t padding)
{
    const int stride = strideOf(picture.width);
    std::vector<uint8_t> rows((size_t)stride * (size_t)picture.height, padding);
    const Pixel* p = picture.pixels.data();  // top row first: the last of those stored
    for (int y = picture.height - 1; y >= 0; --y) {
        uint8_t* bytes = rows.data() + (size_t)y * (size_t)stride;
        for (int x = 0; x < picture.width; ++x, ++p, bytes += 3) {
            bytes[0] = (uint8_t)p->blue;
            bytes[1] = (uint8_t)p->green;
            bytes[2] = (uint8_t)p->red;
        }
    }
    return rows;
}

Picture fromStoredRows(const uint8_t* rows, int width, int height)
{
    Picture picture(width, height);
    Pixel* p = picture.pixels.data();
    for (int y = height - 1; y >= 0; --y) {
        const uint8_t* bytes = rows + (size_t)y * (size_t)strideOf(width);
        for (int x = 0; x < width; ++x, ++p, bytes += 3)
            *p = {bytes[0], bytes[1], bytes[2]};
    }
    return picture;
}

StoredPicture stored(const Picture& picture, uint8_t padding)
{
    return {picture.width, picture.height, storedRows(picture, padding)};
}

Picture shown(const StoredPicture& rows)
{
    return fromStoredRows(rows.bytes.data(), rows.width, rows.height);
}

}  // namespace reference
