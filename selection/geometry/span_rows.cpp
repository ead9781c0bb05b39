#include "selection/geometry/span_rows.h"

#include <cstdint>
#include <cstdlib>

#include "image/pixels/scarce_memory.h"

static size_t countCrossings(const RowHead* table, int heads)
{
    size_t count = 0;
    for (int row = 0; row < heads; ++row)
        for (const RowHead* node = table[row].next; node != table + row; node = node->next)
            count++;
    return count;
}

static int copyColumns(int* columns, const RowHead* head, int left)
{
    int count = 0;
    for (const RowHead* node = head->next; node != head; node = node->next)
        columns[count++] = node->x + left;
    return count;
}

// The rows begin with their smallest column.
static int smallestColumn(const RowHead* table, int heads)
{
    int smallest = CROSSING_END;
    for (int row = 0; row < heads; ++row)
        if (table[row].next->x < smallest) smallest = table[row].next->x;
    return smallest;
}

// Rows and columns lie in one block.
bool makeSpanOutline(const RowHead* table, PixelRect rect, SpanOutline& outline)
{
    outline = SpanOutline{};
    const int heads = crossingRowCount(table) + 1, smallest = smallestColumn(table, heads);
    const bool usable = rect.left + smallest >= 1 && rect.right < CROSSING_END;
    const int left = usable ? rect.left : 1 - smallest;
    const size_t bytes = (size_t)heads * sizeof(RowSpans) + countCrossings(table, heads) * sizeof(int);
    RowSpans* rows = (RowSpans*)takeMemory(bytes);
    if (!rows) return false;
    int* columns = (int*)(rows + heads);
    for (int row = 0; row < heads; ++row) {
        const int count = copyColumns(columns, table + row, left);
        rows[row] = RowSpans{columns, count};
        columns += count;
    }
    outline.spans = SpanTable{rows, heads};
    outline.rect = PixelRect{left, 0, left + rect.right - rect.left, rect.bottom - rect.top};
    return true;
}

void freeSpanOutline(SpanOutline& outline)
{
    free((void*)outline.spans.rows);
    outline = SpanOutline{};
}
