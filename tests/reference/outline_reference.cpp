#include "tests/reference/outline_reference.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

std::vector<ReferencePoint> referenceLine(ReferencePoint from, ReferencePoint to)
{
    const int dx = std::abs(to.x - from.x), dy = std::abs(to.y - from.y), steps = std::max(dx, dy);
    const int signX = to.x < from.x ? -1 : 1, signY = to.y < from.y ? -1 : 1;
    std::vector<ReferencePoint> points = {from};
    for (int n = 1; n <= steps; ++n) {
        const int x = (int)std::floor((double)n * dx / steps + 0.5), y = (int)std::floor((double)n * dy / steps + 0.5);
        points.push_back({from.x + signX * x, from.y + signY * y});
    }
    return points;
}

ReferenceCrossings::ReferenceCrossings(int rows, int columnCount)
    : rowCount(rows), columns(columnCount), cells((size_t)rows + 1, std::vector<bool>((size_t)columnCount))
{
}

void ReferenceCrossings::toggle(int row, int column)
{
    if (row < 0 || row > rowCount || column >= 32766) return;
    cells.at((size_t)row).at((size_t)column).flip();
}

void ReferenceCrossings::addStep(ReferencePoint from, ReferencePoint to)
{
    if (from.y != to.y) toggle(std::max(from.y, to.y), std::max(from.x, to.x));
}

std::vector<int> ReferenceCrossings::row(int y) const
{
    std::vector<int> found;
    for (int x = 0; x < columns; ++x)
        if (cells.at((size_t)y).at((size_t)x)) found.push_back(x);
    return found;
}

bool ReferenceCrossings::inside(int x, int y) const
{
    if (y < 0 || y > rowCount) return false;
    int left = 0, right = 0;
    for (int column : row(y))
        (column <= x ? left : right)++;
    return left % 2 == 1 && right > 0;  // one without a partner selects nothing
}

ReferenceBounds ReferenceCrossings::bounds() const
{
    int left = 32766, right = 0, top = rowCount, bottom = 0;
    for (int y = 0; y < rowCount; ++y) {
        for (int x : row(y)) {
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    if (left >= right || top >= bottom) return {true, 0, 0, 0, 0};
    return {false, left - 1, top - 1, right + 1, bottom + 1};
}

static void drawTo(ReferenceOutline& outline, ReferencePoint from, ReferencePoint to)
{
    const std::vector<ReferencePoint> line = referenceLine(from, to);
    for (size_t n = 1; n < line.size(); ++n) {
        outline.points.push_back(line[n]);
        outline.crossings.addStep(line[n - 1], line[n]);
    }
}

ReferenceOutline referenceOutline(int rowCount, int columns, const std::vector<ReferencePoint>& given,
                                  ReferencePoint release)
{
    ReferenceOutline outline = {{given.at(0)}, ReferenceCrossings(rowCount, columns)};
    for (size_t n = 1; n < given.size(); ++n)
        drawTo(outline, given[n - 1], given[n]);
    drawTo(outline, release, given[0]);
    return outline;
}

reference::Picture referenceSelectionMask(const ReferenceCrossings& crossings, const ReferenceBounds& bounds)
{
    reference::Picture mask(bounds.right - bounds.left, bounds.bottom - bounds.top);
    for (int y = 0; y < mask.height; ++y) {
        const int row = y + bounds.top;
        const bool exists = row >= 0 && row <= crossings.rowCount;
        const size_t all = exists ? crossings.row(row).size() : 0;
        size_t passed = 0;
        for (int column = 0; exists && column < bounds.left; ++column)
            passed += crossings.cells.at((size_t)row).at((size_t)column);
        for (int x = 0; x < mask.width; ++x) {
            const int column = x + bounds.left;
            if (exists && column >= 0 && column < crossings.columns)
                passed += crossings.cells.at((size_t)row).at((size_t)column);
            const uint8_t value = passed % 2 == 1 && passed < all ? 0 : 255;
            mask.at(x, y) = {value, value, value};
        }
    }
    return mask;
}

reference::Picture referenceSelectionImage(const reference::Picture& image, const ReferenceCrossings& crossings,
                                           const ReferenceBounds& bounds)
{
    const reference::Picture mask = referenceSelectionMask(crossings, bounds);
    reference::Picture cut(mask.width, mask.height);
    for (int y = 0; y < cut.height; ++y) {
        for (int x = 0; x < cut.width; ++x) {
            const int sx = x + bounds.left, sy = y + bounds.top;
            if (mask.at(x, y).red == 0 && sx >= 0 && sy >= 0 && sx < image.width && sy < image.height)
                cut.at(x, y) = image.at(sx, sy);
        }
    }
    return cut;
}

static int clampTo(int value, int size)
{
    return std::min(std::max(value, 1), size - 2);
}

std::vector<ReferencePoint> randomOutline(std::mt19937& random, int shape, int width, int height, int points)
{
    const auto below = [&](int n) { return (int)(random() % (unsigned)n); };
    std::vector<ReferencePoint> outline;
    ReferencePoint pen = {1 + below(width - 2), 1 + below(height - 2)};
    for (int n = 0; n < points; ++n) {
        switch (shape % RANDOM_OUTLINE_SHAPES) {
        case 0: pen = {1 + below(width - 2), 1 + below(height - 2)}; break;  // crosses itself
        case 1: pen = {pen.x + below(9) - 4, pen.y + below(9) - 4}; break;   // wanders
        case 2: pen = {n % 2 ? width / 2 : 1 + below(width - 2), n % 2 ? height / 2 : 1 + below(height - 2)}; break;
        case 3: pen = {1 + n % (width - 2), height / 2 - n % 2}; break;                         // saw on one row
        case 4: pen = {width / 2 - n % 2, 1 + n % (height - 2)}; break;                         // and in one column
        default: pen = {below(2) ? below(width) : below(2) * width, below(2) * height}; break;  // along the border
        }
        pen = {clampTo(pen.x, width), clampTo(pen.y, height)};
        outline.push_back(pen);
    }
    return outline;
}
