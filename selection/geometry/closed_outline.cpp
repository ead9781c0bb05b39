#include "selection/geometry/closed_outline.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "image/pixels/scarce_memory.h"
#include "tools/kernels/digital_line.h"

struct Outlined {
    const PixelPoint* points;
    int count;
};

static PixelPoint nextOf(const Outlined& outline, int n)
{
    return outline.points[n + 1 < outline.count ? n + 1 : 0];
}

// The columns at which the outline crosses each row, in the order in which they come. Behind those of a row is room
// for one more, and then those of the next row follow.
struct Filling {
    int rowCount;
    PixelPoint origin;
    int32_t* columns;
    size_t* places;  // by row: where its next column goes. At first the row's first one, in the end its spare room
    PixelPoint* walked;
};

// Whether a step leads to another row cannot be foreseen, so there is no branch on it: a column that is none is
// written all the same, and then the next one over it.
template <typename Line>
static void walkLine(Filling& filling, Line line)
{
    PixelPoint last = {line.x - filling.origin.x, line.y - filling.origin.y};
    while (nextPoint(line)) {
        if (filling.walked) *filling.walked++ = {line.x, line.y};
        const PixelPoint point = {line.x - filling.origin.x, line.y - filling.origin.y};
        const int lower = std::max(point.y, last.y);
        if (lower >= 0 && lower <= filling.rowCount) {
            size_t& place = filling.places[lower];
            filling.columns[place] = std::max(point.x, last.x);
            place += point.y != last.y;
        }
        last = point;
    }
}

static void walkOutline(Filling& filling, const Outlined& outline)
{
    for (int n = 0; n < outline.count; ++n) {
        const PixelPoint from = outline.points[n], to = nextOf(outline, n);
        if (isNear(from) && isNear(to)) {
            walkLine(filling, beginNearLine(from, to));
        } else {
            walkLine(filling, beginLine(from, to));
        }
    }
}

// Short rows: every column goes where as many others are smaller. There is no branch that could be foreseen wrongly.
constexpr int SHORT_ROW = 64;

static void sortShortRow(const int32_t* columns, int count, int32_t* sorted)
{
    for (int i = 0; i < count; ++i) {
        const int32_t column = columns[i];
        int smaller = 0;
        for (int k = 0; k < i; ++k)
            smaller += columns[k] <= column;
        for (int k = i + 1; k < count; ++k)
            smaller += columns[k] < column;
        sorted[smaller] = column;
    }
}

// Links sorted columns as a row of the table into nodes from `node` on. Two at one place cancel, and what lies
// beyond the columns of a table is left out. Returns the node after the last one used.
static RowHead* linkRow(RowHead* head, const int32_t* first, const int32_t* end, RowHead* node)
{
    RowHead* last = head;
    while (first < end && *first < CROSSING_END) {
        const int32_t* const begin = first;
        while (first < end && *first == *begin)
            ++first;
        if ((first - begin) % 2 == 0) continue;
        node->x = *begin;
        last->next = node;
        last = node++;
    }
    last->next = head;
    return node;
}

static RowHead* sortAndLink(RowHead* head, int32_t* first, int32_t* end, RowHead* node)
{
    if (end - first > SHORT_ROW) {
        std::sort(first, end);
        return linkRow(head, first, end, node);
    }
    int32_t sorted[SHORT_ROW];
    sortShortRow(first, (int)(end - first), sorted);
    return linkRow(head, sorted, sorted + (end - first), node);
}

// One more place where the lines that cross a row begin to do so, one less where they no longer do.
static void countLines(size_t* changes, int rowCount, const Outlined& outline, PixelPoint origin)
{
    for (int n = 0; n < outline.count; ++n) {
        const int64_t y1 = (int64_t)outline.points[n].y - origin.y, y2 = (int64_t)nextOf(outline, n).y - origin.y;
        const int64_t first = std::max<int64_t>(std::min(y1, y2) + 1, 0);
        const int64_t end = std::min<int64_t>(std::max(y1, y2), rowCount) + 1;
        if (first >= end) continue;
        ++changes[first];
        --changes[end];  // below 0 it wraps, and back
    }
}

// Where each row's columns begin, and behind the last row how much room they need in all. Null without memory.
static size_t* placeRows(int rowCount, const Outlined& outline, PixelPoint origin)
{
    const size_t rows = (size_t)rowCount + 1;
    size_t* const places = (size_t*)takeZeroedMemory(rows + 1, sizeof(size_t));
    if (!places) return nullptr;
    countLines(places, rowCount, outline, origin);
    size_t lines = 0, room = 0;
    for (size_t row = 0; row <= rows; ++row) {
        lines += places[row];
        places[row] = room;
        room += lines + 1;
    }
    return places;
}

static bool linkRows(RowHead* table, const Filling& filling)
{
    const size_t room = filling.places[filling.rowCount] + 1;
    RowHead *const nodes = takeNodes(table, room), *node = nodes;
    int32_t* first = filling.columns;
    for (int row = 0; nodes && row <= filling.rowCount; ++row) {
        int32_t* const end = filling.columns + filling.places[row];
        node = sortAndLink(table + row, first, end, node);
        first = end + 1;
    }
    if (nodes) returnNodes(table, room - (size_t)(node - nodes));
    return nodes != nullptr;
}

static bool fillTable(RowHead* table, Filling& filling, const Outlined& outline)
{
    const size_t room = filling.places[filling.rowCount + 1];
    if (room > PTRDIFF_MAX / sizeof(int32_t)) return false;
    filling.columns = (int32_t*)takeMemory(room * sizeof(int32_t));
    if (!filling.columns) return false;
    walkOutline(filling, outline);
    const bool linked = linkRows(table, filling);
    free(filling.columns);
    return linked;
}

int stepsOfOutline(const PixelPoint* points, int count)
{
    const Outlined outline = {points, count};
    int64_t steps = 0;
    for (int n = 0; n < count && steps <= INT_MAX; ++n) {
        const PixelPoint from = points[n], to = nextOf(outline, n);
        steps += std::max(std::abs((int64_t)to.x - from.x), std::abs((int64_t)to.y - from.y));
    }
    return steps <= INT_MAX ? (int)steps : -1;
}

RowHead* crossingsOfOutline(int rowCount, const PixelPoint* points, int count, PixelPoint origin, PixelPoint* walked)
{
    const Outlined outline = {points, count};
    RowHead* const table = createCrossings(rowCount);
    size_t* const places = table ? placeRows(rowCount, outline, origin) : nullptr;
    Filling filling = {rowCount, origin, nullptr, places, walked};
    const bool filled = places && fillTable(table, filling, outline);
    free(places);
    if (filled) return table;
    freeCrossings(table);
    return nullptr;
}
