// The row-crossing table: for each image row the columns at which the selection's outline crosses it.
//
// A table is an array of heads, one for each image row and one more. Each head is the sentinel of a
// circular list sorted by ascending column: an empty row is a head whose x is CROSSING_END and whose
// next points to the head itself. Selected are the pixels from the 1st crossing up to the 2nd, from
// the 3rd up to the 4th and so on; a last crossing without a partner selects nothing.
//
// A table is passed around as the pointer to its head of row 0. It owns its nodes, which come from a
// few large blocks of its own; freeCrossings releases everything at once. Functions that make a table
// return null when there is no memory, and what they were given is unchanged.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/bits_view.h"

constexpr int32_t CROSSING_END = 32766;  // ends every row; nothing is stored at or beyond it

// A head or a crossing: the two look alike.
struct RowHead {
    int32_t x;  // column, image pixels
    RowHead* next;
};

// An empty table for an image of `rowCount` rows, 0 or more.
RowHead* createCrossings(int rowCount);
void freeCrossings(RowHead* table);  // null is allowed

// For whoever fills an empty table by itself: so many nodes in a row, which belong to the table. Null for none and
// when there is no memory. The last ones that turn out not to be needed are returned before any others are taken.
RowHead* takeNodes(RowHead* table, size_t count);
void returnNodes(RowHead* table, size_t count);

// The image rows that the table was made for (its last head is one row below them).
int crossingRowCount(const RowHead* table);

// Adds the crossing of an outline step between two points that lie on different rows: on the lower
// row, at the larger column. Two crossings at one place cancel. Rows below 0 and above the row count
// (not AT it), and columns from CROSSING_END on, are ignored. False when there was no memory: the table
// then lacks this crossing.
bool addCrossing(RowHead* table, PixelPoint from, PixelPoint to);

// A copy in the same order.
RowHead* copyCrossings(const RowHead* table);

// The rows of a rectangle as a table of their own, whose rows and columns count from the rectangle's corner:
// its row 0 is row rect.top, and it has one row below the rectangle's like any table. Columns are not cut.
RowHead* cropCrossings(const RowHead* table, PixelRect rect);

// Row r goes to top + bottom - r, the columns stay.
RowHead* mirrorCrossingsVertically(const RowHead* table, PixelRect rect);

// Column x goes to left + right - x, lowered to right - 1 where it would reach right.
RowHead* mirrorCrossingsHorizontally(const RowHead* table, PixelRect rect);

// The head of a row; null for a row the table does not have.
const RowHead* crossingsOfRow(const RowHead* table, int row);

// Selected pixels left up to right (exclusive) of a row.
struct CrossingSpan {
    int left, right;
};

// Walks the spans of one row, from the left:
//     SpanWalk walk = beginSpans(crossingsOfRow(table, row));
//     for (CrossingSpan span; nextSpan(walk, span);) ...
struct SpanWalk {
    const RowHead* at;  // the next span's first crossing; null for no row
};

inline SpanWalk beginSpans(const RowHead* head)
{
    return SpanWalk{head ? head->next : nullptr};
}

inline bool nextSpan(SpanWalk& walk, CrossingSpan& span)
{
    if (!walk.at || walk.at->x >= CROSSING_END || walk.at->next->x >= CROSSING_END) return false;
    span = CrossingSpan{walk.at->x, walk.at->next->x};
    walk.at = walk.at->next->next;
    return true;
}

// Whether the pixel lies in a span.
bool crossingsContain(const RowHead* table, PixelPoint pixel);

// The selection's rectangle: one pixel more than its crossings to the left, above and to the right,
// and down to its last row, image pixels. False (and `rect` unchanged) when nothing is selected, and
// also when all crossings lie on one row or in one column.
bool computeCrossingBounds(const RowHead* table, PixelRect& rect);
