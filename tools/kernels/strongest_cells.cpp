#include "tools/kernels/strongest_cells.h"

#include <algorithm>
#include <cstdlib>

#include "image/pixels/vector_bytes.h"

constexpr int NEIGHBOURS = 2;  // looked at ahead, and as many behind
constexpr int LEAST_POINTS = 32;
constexpr int UNKNOWN = -1, TOO_MANY = -2;

bool makeWeightGrid(WeightGrid* grid, int width, int height)
{
    const size_t stride = (size_t)width + 2 * NEIGHBOURS;
    // A vector that begins inside the last row may end behind the frame.
    grid->memory = (uint8_t*)calloc(stride * ((size_t)height + 2 * NEIGHBOURS) + VECTOR_BYTES, 1);
    grid->first = grid->memory + NEIGHBOURS * stride + NEIGHBOURS;
    grid->stride = (ptrdiff_t)stride;
    grid->width = width;
    grid->height = height;
    return grid->memory != nullptr;
}

void freeWeightGrid(WeightGrid* grid)
{
    free(grid->memory);
    *grid = WeightGrid{};
}

StrongestSearch beginStrongestSearch(const WeightGrid& grid, const StrokeSegment& segment, ptrdiff_t coverageStride)
{
    StrongestSearch search = {&grid, &segment, coverageStride, nullptr, 2 * (grid.width + grid.height), {}};
    std::fill_n(search.counts, 16, UNKNOWN);
    if (segment.count >= LEAST_POINTS && grid.width >= (int)VECTOR_BYTES)
        search.memory = (StrongestCell*)malloc((size_t)search.room * 16 * sizeof(StrongestCell));
    return search;
}

void endStrongestSearch(StrongestSearch* search)
{
    free(search->memory);
    *search = StrongestSearch{};
}

// Where in the grid the dab of point `other` has the weight for a pixel, from where the dab of point n has it.
static ptrdiff_t offsetOfDab(const StrongestSearch& search, int n, int other)
{
    const PixelPoint here = search.segment->points[n], there = search.segment->points[other];
    return (here.y - there.y) * search.grid->stride + (here.x - there.x);
}

// The neighbours' offsets.
struct NeighbourDabs {
    ptrdiff_t ahead[NEIGHBOURS], behind[NEIGHBOURS];
};

// A bit for each of 16 cells: set where no dab ahead is as strong and none behind is stronger. Where the
// weight is 0 every other one is as strong.
static unsigned strongestOf16(const uint8_t* weights, const NeighbourDabs& others)
{
    const __m128i own = loadBytes(weights);
    const __m128i ahead = _mm_max_epu8(loadBytes(weights + others.ahead[0]), loadBytes(weights + others.ahead[1]));
    const __m128i behind = _mm_max_epu8(loadBytes(weights + others.behind[0]), loadBytes(weights + others.behind[1]));
    const __m128i aheadAsStrong = _mm_cmpeq_epi8(_mm_max_epu8(own, ahead), ahead);
    const __m128i noneBehindStronger = _mm_cmpeq_epi8(_mm_max_epu8(own, behind), own);
    return (unsigned)_mm_movemask_epi8(_mm_andnot_si128(aheadAsStrong, noneBehindStronger));
}

// Appends the strongest cells of row j to the list. False when there is no room for them.
static bool addRow(const StrongestSearch& search, const NeighbourDabs& others, int j, StrongestCell* list, int* count)
{
    const uint8_t* row = weightRow(*search.grid, j);
    for (int block = 0; block < search.grid->width; block += (int)VECTOR_BYTES) {
        unsigned bits = strongestOf16(row + block, others);
        for (int i = block; bits && i < search.grid->width; ++i, bits >>= 1) {
            if (!(bits & 1)) continue;
            if (*count == search.room) return false;
            list[(*count)++] = StrongestCell{search.coverageStride * j + i, row[i]};
        }
    }
    return true;
}

static int listStrongest(const StrongestSearch& search, int n, StrongestCell* list)
{
    const NeighbourDabs others = {{offsetOfDab(search, n, n + 1), offsetOfDab(search, n, n + 2)},
                                  {offsetOfDab(search, n, n - 1), offsetOfDab(search, n, n - 2)}};
    int count = 0;
    for (int j = 0; j < search.grid->height; ++j)
        if (!addRow(search, others, j, list, &count)) return TOO_MANY;
    return count;
}

static unsigned isDiagonal(PixelPoint from, PixelPoint to)
{
    return from.x != to.x && from.y != to.y;
}

static unsigned arrangementAt(const PixelPoint* point)
{
    return isDiagonal(point[-2], point[-1]) | isDiagonal(point[-1], point[0]) << 1 |
           isDiagonal(point[0], point[1]) << 2 | isDiagonal(point[1], point[2]) << 3;
}

bool findStrongest(StrongestSearch& search, int n, StrongestCells* found)
{
    if (!search.memory || n < NEIGHBOURS || n >= search.segment->count - NEIGHBOURS) return false;
    const unsigned arrangement = arrangementAt(search.segment->points + n);
    StrongestCell* const list = search.memory + (size_t)arrangement * (size_t)search.room;
    int& count = search.counts[arrangement];
    if (count == UNKNOWN) count = listStrongest(search, n, list);
    *found = StrongestCells{list, count};
    return count != TOO_MANY;
}
