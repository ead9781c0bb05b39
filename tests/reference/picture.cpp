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
    std::vector<uint8_t> rows;
    for (int y = picture.height - 1; y >= 0; --y) {
        for (int x = 0; x < picture.width; ++x) {
            const Pixel& p = picture.at(x, y);
            rows.insert(rows.end(), {(uint8_t)p.blue, (uint8_t)p.green, (uint8_t)p.red});
        }
        while (rows.size() % 4 != 0)
            rows.push_back(padding);
    }
    return rows;
}

Picture fromStoredRows(const uint8_t* rows, int width, int height)
{
    Picture picture(width, height);
    for (int y = height - 1; y >= 0; --y, rows += strideOf(width))
        for (int x = 0; x < width; ++x)
            picture.at(x, y) = {rows[x * 3], rows[x * 3 + 1], rows[x * 3 + 2]};
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
