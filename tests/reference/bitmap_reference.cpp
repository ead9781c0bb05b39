#include "tests/reference/bitmap_reference.h"

reference::Picture randomReference(std::mt19937& random, int width, int height)
{
    reference::Picture image(width, height);
    for (reference::Pixel& p : image.pixels)
        p = {(uint8_t)random(), (uint8_t)random(), (uint8_t)random()};
    return image;
}

reference::Picture randomMask(std::mt19937& random, int width, int height)
{
    reference::Picture image(width, height);
    bool inside = random() % 2 != 0;
    for (reference::Pixel& p : image.pixels) {
        if (random() % 3 == 0) inside = !inside;
        p = inside ? reference::Pixel{0, 0, 0} : reference::Pixel{255, 255, 255};
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

reference::Picture referenceExtract(const reference::Picture& image, int left, int top, int right, int bottom)
{
    int w = right - left, h = bottom - top;
    if (w > image.width) w = image.width;
    if (h > image.height) h = image.height;
    if (w < 1 || h < 1) return reference::Picture(0, 0);
    reference::Picture result(w, h);
    if (left + w < 1 || top + h < 1 || left >= image.width || top >= image.height) return result;
    int columns, rows, toX, toY;
    extractAxis(left, w, image.width, &columns, &toX);
    extractAxis(top, h, image.height, &rows, &toY);
    const int fromX = left < 0 ? 0 : left, fromY = top < 0 ? 0 : top;
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x)
            result.at(toX + x, toY + y) = image.at(fromX + x, fromY + y);
    }
    return result;
}

static uint8_t byteOfRow(const reference::Picture& image, int y, int byte)
{
    const reference::Pixel p = image.at(byte / 3, y);
    return byte % 3 == 0 ? p.blue : byte % 3 == 1 ? p.green : p.red;
}

bool referencePaste(reference::Picture& destination, const reference::Picture& source, int left, int top)
{
    if (left + source.width < 1 || top + source.height < 1) return false;
    if (left >= destination.width || top >= destination.height) return false;
    int columns, rows, skipBytes, skipRows;
    extractAxis(left, source.width, destination.width, &columns, &skipBytes);
    extractAxis(top, source.height, destination.height, &rows, &skipRows);
    const int toX = left < 0 ? 0 : left, toY = top < 0 ? 0 : top;
    for (int y = 0; y < rows && toY + y < destination.height; ++y) {
        for (int x = 0; x < columns && toX + x < destination.width; ++x) {
            const int byte = skipBytes + x * 3;
            destination.at(toX + x, toY + y) = {byteOfRow(source, skipRows + y, byte),
                                                byteOfRow(source, skipRows + y, byte + 1),
                                                byteOfRow(source, skipRows + y, byte + 2)};
        }
    }
    return true;
}

void referencePasteMasked(reference::Picture& destination, const reference::Picture& source,
                          const reference::Picture& mask, int left, int top)
{
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < source.width; ++x) {
            const int toX = left + x, toY = top + y;
            if (toX < 0 || toY < 0 || toX >= destination.width || toY >= destination.height) continue;
            if (mask.at(x, y).red == 0) destination.at(toX, toY) = source.at(x, y);
        }
    }
}

reference::Picture referenceFlipVertical(const reference::Picture& image)
{
    reference::Picture result = image;
    // Stored row k counts from the bottom: picture row height - 1 - k.
    for (int k = 0; k <= image.height - 2; ++k) {
        for (int x = 0; x < image.width; ++x) {
            result.at(x, image.height - 1 - k) = image.at(x, image.height - 1 - (image.height - 2 - k));
        }
    }
    return result;
}

reference::Picture referenceFlipHorizontal(const reference::Picture& image)
{
    reference::Picture result = image;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x)
            result.at(x, y) = image.at(image.width - 1 - x, y);
    }
    return result;
}

static std::vector<int16_t> enlargingTable(int16_t from, int16_t to)
{
    const int16_t a = (int16_t)(from - 1), b = (int16_t)(to - 1);
    int16_t err = (int16_t)(2 * a - b), v = 0;
    std::vector<int16_t> table{0};
    for (int16_t n = 0; n < b; ++n) {
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
    for (int16_t n = 0; n < b; ++n) {
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

reference::Picture referenceScale(const reference::Picture& source, int width, int height)
{
    const std::vector<int16_t> columns = referenceNearestTable(source.width, width);
    const std::vector<int16_t> rows = referenceNearestTable(source.height, height);
    reference::Picture result(width, height);
    for (int j = 0; j < height; ++j) {
        for (int i = 0; i < width; ++i) {
            result.at(i, height - 1 - j) = source.at(columns.at(i), source.height - 1 - rows.at(j));
        }
    }
    return result;
}
