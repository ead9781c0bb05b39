#include "selection/geometry/span_rows.h"

#include <cstdint>
#include <cstdlib>

static size_t countCrossings(const RowHead* table, int heads)
{
    size_t count = 0;
    for (int row = 0; row < heads; row++)
        for (const RowHead* node = table[row].next; node != table + row; node = node->next)
            count++;
    return count;
}

static int copyColumns(int* columns, const RowHead* head)
{
    int count = 0;
    for (const RowHead* node = head->next; node != head; node = node->next)
        columns[count++] = node->x;
    return count;
}

// Rows and columns lie in one block.
bool makeSpanRows(const RowHead* table, SpanTable& spans)
{
    spans = SpanTable{};
    const int heads = crossingRowCount(table) + 1;
    const size_t bytes = (size_t)heads * sizeof(RowSpans) + countCrossings(table, heads) * sizeof(int);
    RowSpans* rows = (RowSpans*)malloc(bytes);
    if (!rows) return false;
    int* columns = (int*)(rows + heads);
    for (int row = 0; row < heads; row++) {
        const int count = copyColumns(columns, table + row);
        rows[row] = RowSpans{columns, count};
        columns += count;
    }
    spans = SpanTable{rows, heads};
    return true;
}

void freeSpanRows(SpanTable& spans)
{
    free((void*)spans.rows);
    spans = SpanTable{};
}
