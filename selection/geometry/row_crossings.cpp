#include "selection/geometry/row_crossings.h"

#include <climits>
#include <cstddef>
#include <cstdlib>

#include "image/pixels/scarce_memory.h"

// Nodes are handed out from the newest block; cancelled ones are kept for reuse.
struct NodeBlock {
    NodeBlock* older;
    int used, size;
    RowHead nodes[1];
};

// Lies before head 0.
struct TableHeader {
    NodeBlock* blocks;
    RowHead* spare;   // cancelled nodes
    RowHead** hints;  // per head: where a search may begin. Never a node that has been cancelled
    int rowCount;
};

constexpr int FIRST_BLOCK_NODES = 1024;
constexpr int LARGEST_BLOCK_NODES = 65536;
constexpr int HINT_DISTANCE = 32;

// Keeps the heads after the header aligned.
constexpr size_t HEADER_BYTES = (sizeof(TableHeader) + 15) & ~(size_t)15;

static TableHeader* headerOf(RowHead* table)
{
    return (TableHeader*)((char*)table - HEADER_BYTES);
}

static const TableHeader* headerOf(const RowHead* table)
{
    return (const TableHeader*)((const char*)table - HEADER_BYTES);
}

static void clearRow(RowHead* head)
{
    head->x = CROSSING_END;
    head->next = head;
}

RowHead* createCrossings(int rowCount)
{
    if (rowCount < 0) return nullptr;
    const size_t heads = (size_t)rowCount + 1, perHead = sizeof(RowHead) + sizeof(RowHead*);
    if (heads > ((size_t)PTRDIFF_MAX - HEADER_BYTES) / perHead) return nullptr;
    char* memory = (char*)takeMemory(HEADER_BYTES + heads * perHead);
    if (!memory) return nullptr;
    RowHead* table = (RowHead*)(memory + HEADER_BYTES);
    TableHeader* header = headerOf(table);
    *header = TableHeader{nullptr, nullptr, (RowHead**)(table + heads), rowCount};
    for (size_t row = 0; row < heads; ++row) {
        clearRow(table + row);
        header->hints[row] = table + row;
    }
    return table;
}

void freeCrossings(RowHead* table)
{
    if (!table) return;
    TableHeader* header = headerOf(table);
    for (NodeBlock* block = header->blocks; block;) {
        NodeBlock* older = block->older;
        free(block);
        block = older;
    }
    free(header);
}

int crossingRowCount(const RowHead* table)
{
    return headerOf(table)->rowCount;
}

static bool addBlock(TableHeader* header, int nodes)
{
    NodeBlock* block = (NodeBlock*)takeMemory(offsetof(NodeBlock, nodes) + (size_t)nodes * sizeof(RowHead));
    if (!block) return false;
    block->older = header->blocks;
    block->used = 0;
    block->size = nodes;
    header->blocks = block;
    return true;
}

RowHead* takeNodes(RowHead* table, size_t count)
{
    if (count == 0 || count > INT_MAX / sizeof(RowHead)) return nullptr;
    TableHeader* header = headerOf(table);
    if (!addBlock(header, (int)count)) return nullptr;
    header->blocks->used = (int)count;
    return header->blocks->nodes;
}

void returnNodes(RowHead* table, size_t count)
{
    if (count > 0) headerOf(table)->blocks->used -= (int)count;
}

static int nextBlockSize(const NodeBlock* block)
{
    if (!block) return FIRST_BLOCK_NODES;
    return block->size < LARGEST_BLOCK_NODES / 2 ? block->size * 2 : LARGEST_BLOCK_NODES;
}

static RowHead* takeNode(TableHeader* header)
{
    if (RowHead* node = header->spare) {
        header->spare = node->next;
        return node;
    }
    NodeBlock* block = header->blocks;
    if (!block || block->used == block->size) {
        if (!addBlock(header, nextBlockSize(block))) return nullptr;
        block = header->blocks;
    }
    return &block->nodes[block->used++];
}

static bool insertAfter(TableHeader* header, RowHead* before, int32_t x)
{
    RowHead* node = takeNode(header);
    if (!node) return false;
    node->x = x;
    node->next = before->next;
    before->next = node;
    return true;
}

static void removeAfter(TableHeader* header, RowHead* before)
{
    RowHead* node = before->next;
    before->next = node->next;
    node->next = header->spare;
    header->spare = node;
}

// The last node before column x. An outline comes back to a row near the place where it left it, so
// the search begins a little before the place of the last one.
static RowHead* findBefore(TableHeader* header, RowHead* table, int row, int32_t x)
{
    RowHead* hint = header->hints[row];
    RowHead* before = hint->x < x ? hint : table + row;
    RowHead* behind = before;
    for (int steps = 0; before->next->x < x; ++steps) {
        before = before->next;
        if (steps >= HINT_DISTANCE) behind = behind->next;
    }
    header->hints[row] = behind;
    return before;
}

bool addCrossing(RowHead* table, PixelPoint from, PixelPoint to)
{
    const int row = from.y > to.y ? from.y : to.y, x = from.x > to.x ? from.x : to.x;
    TableHeader* header = headerOf(table);
    // The row equal to the count is let through: it has a head of its own, which counts where rows are walked.
    if (row < 0 || row > header->rowCount || x >= CROSSING_END) return true;
    RowHead* before = findBefore(header, table, row, x);
    if (before->next->x != x) return insertAfter(header, before, x);
    removeAfter(header, before);
    return true;
}

// Where the rows and columns of a table go in a copy of it.
struct CrossingMap {
    int64_t rowFactor, rowOffset;        // row -> rowFactor * row + rowOffset
    int64_t columnFactor, columnOffset;  // likewise; a factor of -1 turns the order around
    int64_t highestColumn;               // larger ones are lowered to it
};

static int64_t mapColumn(const CrossingMap& map, int32_t x)
{
    const int64_t mapped = map.columnFactor * x + map.columnOffset;
    return mapped > map.highestColumn ? map.highestColumn : mapped;
}

static bool copyRow(TableHeader* header, RowHead* target, const RowHead* source, const CrossingMap& map)
{
    RowHead* last = target;
    for (const RowHead* node = source->next; node != source; node = node->next) {
        const int64_t x = mapColumn(map, node->x);
        if (x >= CROSSING_END || x < INT32_MIN) continue;
        if (!insertAfter(header, last, (int32_t)x)) return false;
        if (map.columnFactor > 0) last = last->next;
    }
    return true;
}

static int countNodes(const TableHeader* header)
{
    int count = 0;
    for (const NodeBlock* block = header->blocks; block; block = block->older)
        count += block->used;
    for (const RowHead* node = header->spare; node; node = node->next)
        count--;
    return count;
}

static RowHead* copyMapped(const RowHead* source, const CrossingMap& map, int rowCount)
{
    RowHead* table = createCrossings(rowCount);
    if (!table) return nullptr;
    TableHeader* header = headerOf(table);
    const int nodes = countNodes(headerOf(source));
    bool copied = nodes == 0 || addBlock(header, nodes);
    for (int row = 0; copied && row <= crossingRowCount(source); ++row) {
        const int64_t target = map.rowFactor * row + map.rowOffset;
        if (target < 0 || target > rowCount) continue;
        copied = copyRow(header, table + target, source + row, map);
    }
    if (copied) return table;
    freeCrossings(table);
    return nullptr;
}

constexpr int64_t ANY_COLUMN = INT64_MAX;

RowHead* copyCrossings(const RowHead* table)
{
    return copyMapped(table, CrossingMap{1, 0, 1, 0, ANY_COLUMN}, crossingRowCount(table));
}

RowHead* cropCrossings(const RowHead* table, PixelRect rect)
{
    const CrossingMap toCorner = {1, -(int64_t)rect.top, 1, -(int64_t)rect.left, ANY_COLUMN};
    return copyMapped(table, toCorner, rect.bottom - rect.top);
}

RowHead* mirrorCrossingsVertically(const RowHead* table, PixelRect rect)
{
    const CrossingMap upsideDown = {-1, (int64_t)rect.top + rect.bottom, 1, 0, ANY_COLUMN};
    return copyMapped(table, upsideDown, crossingRowCount(table));
}

RowHead* mirrorCrossingsHorizontally(const RowHead* table, PixelRect rect)
{
    const CrossingMap sideways = {1, 0, -1, (int64_t)rect.left + rect.right, (int64_t)rect.right - 1};
    return copyMapped(table, sideways, crossingRowCount(table));
}

const RowHead* crossingsOfRow(const RowHead* table, int row)
{
    return row < 0 || row > crossingRowCount(table) ? nullptr : table + row;
}

bool crossingsContain(const RowHead* table, PixelPoint pixel)
{
    SpanWalk walk = beginSpans(crossingsOfRow(table, pixel.y));
    for (CrossingSpan span; nextSpan(walk, span);)
        if (pixel.x >= span.left && pixel.x < span.right) return true;
    return false;
}

// The largest column of a row that is not empty.
static int32_t lastColumn(const RowHead* head)
{
    const RowHead* node = head->next;
    while (node->next != head)
        node = node->next;
    return node->x;
}

bool computeCrossingBounds(const RowHead* table, PixelRect& rect)
{
    const int rowCount = crossingRowCount(table);
    int left = CROSSING_END, top = rowCount, right = 0, bottom = 0;
    for (int row = 0; row < rowCount; ++row) {
        const RowHead* head = table + row;
        if (head->next == head) continue;
        if (top == rowCount) top = row;
        bottom = row;
        if (head->next->x < left) left = head->next->x;
        const int32_t last = lastColumn(head);
        if (last > right) right = last;
    }
    if (left >= right || top >= bottom) return false;
    rect = PixelRect{left - 1, top - 1, right + 1, bottom + 1};
    return true;
}
