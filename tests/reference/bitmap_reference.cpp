#include "tests/reference/bitmap_reference.h"

bool operator==(const ReferencePixel& a, const ReferencePixel& b)
{
    return a.blue == b.blue && a.green == b.green && a.red == b.red;
}

ReferenceImage randomReference(std::mt19937& random, int width, int height)
{
    ReferenceImage image(width, height);
    for (ReferencePixel& p : image.pixels)
        p = {(uint8_t)random(), (uint8_t)random(), (uint8_t)random()};
    return image;
}

ReferenceImage randomMask(std::mt19937& random, int width, int height)
{
    ReferenceImage image(width, height);
    bool inside = random() % 2 != 0;
    for (ReferencePixel& p : image.pixels) {
        if (random() % 3 == 0) inside = !inside;
        p = inside ? ReferencePixel{0, 0, 0} : ReferencePixel{255, 255, 255};
    }
    return image;
}

// Pixels to copy and position in the result for one axis of an extracted rectangle.
static void extractAxis(int position, int length, int limit, int* count, int* resultStart)
{
    const int beyond = position + length - limit;
    if (position >= 0) {
        *count = beyond > 0 ? length - beyond : length;
    } else {
        *count = length + position;
    }
    *resultStart = beyond <= 0 ? length - *count : 0;
}

ReferenceImage referenceExtract(const ReferenceImage& image, int left, int top, int right, int bottom)
{
    int w = right - left, h = bottom - top;
    if (w > image.width) w = image.width;
    if (h > image.height) h = image.height;
    if (w < 1 || h < 1) return ReferenceImage(0, 0);
    ReferenceImage result(w, h);
    if (left + w < 1 || top + h < 1 || left >= image.width || top >= image.height) return result;
    int columns, rows, toX, toY;
    extractAxis(left, w, image.width, &columns, &toX);
    extractAxis(top, h, image.height, &rows, &toY);
    const int fromX = left < 0 ? 0 : left, fromY = top < 0 ? 0 : top;
    for (int y = 0; y < rows; y++) {
        for (int x = 0; x < columns; x++)
            result.set(toX + x, toY + y, image.get(fromX + x, fromY + y));
    }
    return result;
}

static uint8_t byteOfRow(const ReferenceImage& image, int y, int byte)
{
    const ReferencePixel p = image.get(byte / 3, y);
    return byte % 3 == 0 ? p.blue : byte % 3 == 1 ? p.green : p.red;
}

bool referencePaste(ReferenceImage& destination, const ReferenceImage& source, int left, int top)
{
    if (left + source.width < 1 || top + source.height < 1) return false;
    if (left >= destination.width || top >= destination.height) return false;
    int columns, rows, skipBytes, skipRows;
    extractAxis(left, source.width, destination.width, &columns, &skipBytes);
    extractAxis(top, source.height, destination.height, &rows, &skipRows);
    const int toX = left < 0 ? 0 : left, toY = top < 0 ? 0 : top;
    for (int y = 0; y < rows && toY + y < destination.height; y++) {
        for (int x = 0; x < columns && toX + x < destination.width; x++) {
            const int byte = skipBytes + x * 3;
            destination.set(toX + x, toY + y,
                            {byteOfRow(source, skipRows + y, byte), byteOfRow(source, skipRows + y, byte + 1),
                             byteOfRow(source, skipRows + y, byte + 2)});
        }
    }
    return true;
}

void referencePasteMasked(ReferenceImage& destination, const ReferenceImage& source, const ReferenceImage& mask,
                          int left, int top)
{
    for (int y = 0; y < source.height; y++) {
        for (int x = 0; x < source.width; x++) {
            const int toX = left + x, toY = top + y;
            if (toX < 0 || toY < 0 || toX >= destination.width || toY >= destination.height) continue;
            if (mask.get(x, y).red == 0) destination.set(toX, toY, source.get(x, y));
        }
    }
}

ReferenceImage referenceFlipVertical(const ReferenceImage& image)
{
    ReferenceImage result = image;
    // Stored row k counts from the bottom: picture row height - 1 - k.
    for (int k = 0; k <= image.height - 2; k++) {
        for (int x = 0; x < image.width; x++) {
            result.set(x, image.height - 1 - k, image.get(x, image.height - 1 - (image.height - 2 - k)));
        }
    }
    return result;
}

ReferenceImage referenceFlipHorizontal(const ReferenceImage& image)
{
    ReferenceImage result = image;
    for (int y = 0; y < image.height; y++) {
        for (int x = 0; x < image.width; x++)
            result.set(x, y, image.get(image.width - 1 - x, y));
    }
    return result;
}

static std::vector<int16_t> enlargingTable(int16_t from, int16_t to)
{
    const int16_t a = (int16_t)(from - 1), b = (int16_t)(to - 1);
    int16_t err = (int16_t)(2 * a - b), v = 0;
    std::vector<int16_t> table{0};
    for (int16_t n = 0; n < b; n++) {
        if (err < 0) {
            table.push_back(v);
            err = (int16_t)(err + 2 * a);
        } else {
            table.push_back(++v);
            err = (int16_t)(err + 2 * (a - b));
        }
    }
    return table;
}

static std::vector<int16_t> reducingTable(int16_t from, int16_t to)
{
    const int16_t a = (int16_t)(to - 1), b = (int16_t)(from - 1);
    int16_t err = (int16_t)(2 * a - b), v = 0;
    std::vector<int16_t> table{0};
    for (int16_t n = 0; n < b; n++) {
        v++;
        if (err < 0) {
            err = (int16_t)(err + 2 * a);
        } else {
            table.push_back(v);
            err = (int16_t)(err + 2 * (a - b));
        }
    }
    return table;
}

std::vector<int16_t> referenceNearestTable(int from, int to)
{
    return to >= from ? enlargingTable((int16_t)from, (int16_t)to) : reducingTable((int16_t)from, (int16_t)to);
}

ReferenceImage referenceScale(const ReferenceImage& source, int width, int height)
{
    const std::vector<int16_t> columns = referenceNearestTable(source.width, width);
    const std::vector<int16_t> rows = referenceNearestTable(source.height, height);
    ReferenceImage result(width, height);
    for (int j = 0; j < height; j++) {
        for (int i = 0; i < width; i++) {
            result.set(i, height - 1 - j, source.get(columns.at(i), source.height - 1 - rows.at(j)));
        }
    }
    return result;
}

std::vector<uint8_t> storedRows(const ReferenceImage& image, uint8_t padding)
{
    std::vector<uint8_t> rows;
    for (int y = image.height - 1; y >= 0; y--) {
        for (int x = 0; x < image.width; x++) {
            const ReferencePixel p = image.get(x, y);
            rows.insert(rows.end(), {p.blue, p.green, p.red});
        }
        while (rows.size() % 4 != 0)
            rows.push_back(padding);
    }
    return rows;
}

ReferenceImage fromStoredRows(const uint8_t* rows, int width, int height)
{
    ReferenceImage image(width, height);
    for (int y = height - 1; y >= 0; y--) {
        int used = 0;
        for (int x = 0; x < width; x++, rows += 3, used += 3)
            image.set(x, y, {rows[0], rows[1], rows[2]});
        for (; used % 4 != 0; used++)
            rows++;
    }
    return image;
}
