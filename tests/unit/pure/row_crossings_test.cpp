#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "selection/geometry/row_crossings.h"
#include "tests/reference/outline_reference.h"

using Rows = std::map<int, std::vector<int>>;

// Checks on the way that every row is a circle in ascending order, ended by the sentinel.
static Rows rowsOf(const RowHead* table)
{
    Rows rows;
    for (int row = 0; row <= crossingRowCount(table); ++row) {
        const RowHead* head = crossingsOfRow(table, row);
        EXPECT_EQ(CROSSING_END, head->x);
        for (const RowHead* node = head->next; node != head; node = node->next)
            rows[row].push_back(node->x);
        EXPECT_TRUE(!rows.count(row) || std::is_sorted(rows[row].begin(), rows[row].end()));
    }
    return rows;
}

// A step that crosses the row at the column.
static bool cross(RowHead* table, int row, int column)
{
    return addCrossing(table, PixelPoint{column, row - 1}, PixelPoint{column, row});
}

static RowHead* tableOf(int rowCount, const Rows& rows)
{
    RowHead* table = createCrossings(rowCount);
    for (const auto& row : rows)
        for (int x : row.second)
            EXPECT_TRUE(cross(table, row.first, x));
    return table;
}

// Frees what it is given.
static Rows takeRows(RowHead* table)
{
    Rows rows = rowsOf(table);
    freeCrossings(table);
    return rows;
}

TEST(RowCrossings, HeadsAndNodesAreAColumnAndAPointer)
{
    EXPECT_EQ(2 * sizeof(void*), sizeof(RowHead));
}

TEST(RowCrossings, NewTableHasEmptyRowsAndOneMoreThanTheImage)
{
    RowHead* table = createCrossings(3);
    ASSERT_NE(nullptr, table);
    EXPECT_EQ(3, crossingRowCount(table));
    for (int row = 0; row <= 3; ++row)
        EXPECT_EQ(table + row, table[row].next);
    EXPECT_EQ(nullptr, crossingsOfRow(table, -1));
    EXPECT_EQ(nullptr, crossingsOfRow(table, 4));
    freeCrossings(table);
    freeCrossings(nullptr);
    EXPECT_EQ(nullptr, createCrossings(-1));
}

TEST(RowCrossings, CrossingLiesOnTheLowerRowAtTheLargerColumn)
{
    RowHead* table = createCrossings(10);
    addCrossing(table, PixelPoint{4, 6}, PixelPoint{5, 5});
    addCrossing(table, PixelPoint{3, 7}, PixelPoint{2, 8});
    EXPECT_EQ((Rows{{6, {5}}, {8, {3}}}), takeRows(table));
}

TEST(RowCrossings, TwoAtOnePlaceCancel)
{
    RowHead* table = tableOf(4, {{2, {5, 3, 9}}});
    cross(table, 2, 5);
    EXPECT_EQ((Rows{{2, {3, 9}}}), rowsOf(table));
    cross(table, 2, 5);
    EXPECT_EQ((Rows{{2, {3, 5, 9}}}), takeRows(table));
}

TEST(RowCrossings, RowEqualToTheCountIsKeptAndOneBeyondIsNot)
{
    RowHead* table = createCrossings(4);
    cross(table, 4, 7);
    cross(table, 5, 7);
    cross(table, -1, 7);
    cross(table, 0, 7);
    EXPECT_EQ((Rows{{0, {7}}, {4, {7}}}), takeRows(table));
}

TEST(RowCrossings, ColumnsFromTheEndMarkOnAreIgnored)
{
    RowHead* table = createCrossings(4);
    for (int x : {32765, 32766, 32767, 2000000000})
        EXPECT_TRUE(cross(table, 1, x));
    EXPECT_EQ((Rows{{1, {32765}}}), takeRows(table));
}

TEST(RowCrossings, RandomCrossingsMatchASet)
{
    std::mt19937 random(5);
    for (int round = 0; round < 60; ++round) {
        const int rowCount = 1 + (int)(random() % 5), columns = 2 + (int)(random() % 600);
        RowHead* table = createCrossings(rowCount);
        std::vector<std::set<int>> expected((size_t)rowCount + 1);
        int x = 0;
        for (int n = 0; n < 4000; ++n) {
            const int row = (int)(random() % (unsigned)(rowCount + 1));
            // Runs to the left and to the right as well as jumps.
            x = n % 500 < 50 ? (int)(random() % (unsigned)columns) : (x + (round % 3 - 1) + columns) % columns;
            cross(table, row, x - 20);
            if (!expected[(size_t)row].erase(x - 20)) expected[(size_t)row].insert(x - 20);
        }
        Rows rows;
        for (int row = 0; row <= rowCount; ++row)
            if (!expected[(size_t)row].empty())
                rows[row] = std::vector<int>(expected[(size_t)row].begin(), expected[(size_t)row].end());
        EXPECT_EQ(rows, takeRows(table));
    }
}

TEST(RowCrossings, LastCrossingWithoutPartnerSelectsNothing)
{
    RowHead* table = tableOf(2, {{1, {2, 4, 7}}});
    SpanWalk walk = beginSpans(crossingsOfRow(table, 1));
    CrossingSpan span;
    ASSERT_TRUE(nextSpan(walk, span));
    EXPECT_EQ(2, span.left);
    EXPECT_EQ(4, span.right);
    EXPECT_FALSE(nextSpan(walk, span));
    EXPECT_FALSE(crossingsContain(table, PixelPoint{1, 1}));
    EXPECT_TRUE(crossingsContain(table, PixelPoint{2, 1}));
    EXPECT_TRUE(crossingsContain(table, PixelPoint{3, 1}));
    EXPECT_FALSE(crossingsContain(table, PixelPoint{4, 1}));
    EXPECT_FALSE(crossingsContain(table, PixelPoint{7, 1}));
    EXPECT_FALSE(crossingsContain(table, PixelPoint{3, 9}));
    freeCrossings(table);
}

TEST(RowCrossings, CopyIsTheSameAndItsOwn)
{
    const Rows rows = {{0, {1, 2}}, {3, {5}}, {6, {8, 10, 11}}};
    RowHead* table = tableOf(6, rows);
    cross(table, 1, 1);
    cross(table, 1, 1);  // leaves a spare node
    RowHead* copy = copyCrossings(table);
    freeCrossings(table);
    EXPECT_EQ(rows, rowsOf(copy));
    for (int x = 0; x < 3000; ++x)
        EXPECT_TRUE(cross(copy, 2, 2 * x));  // it can still grow
    EXPECT_EQ(3000u, takeRows(copy)[2].size());
}

TEST(RowCrossings, ACropCountsFromTheRectangleAndCutsNoColumn)
{
    RowHead* table = tableOf(6, {{0, {1}}, {1, {3, 5}}, {4, {32760, 32764}}, {6, {9}}});
    EXPECT_EQ((Rows{{0, {1, 3}}, {3, {32758, 32762}}}), takeRows(cropCrossings(table, {2, 1, 9, 5})));
    EXPECT_EQ((Rows{{0, {1, 3}}, {3, {32758, 32762}}, {5, {7}}}), takeRows(cropCrossings(table, {2, 1, 3, 6})));
    EXPECT_EQ((Rows{{2, {3}}, {3, {5, 7}}, {6, {32762}}}), takeRows(cropCrossings(table, {-2, -2, 5, 4})));
    EXPECT_EQ((Rows{}), takeRows(cropCrossings(table, {0, 2000000000, 5, 2000000001})));
    EXPECT_EQ((Rows{{0, {-999}}, {1, {-997, -995}}, {4, {31760, 31764}}, {6, {-991}}}),
              takeRows(cropCrossings(table, {1000, 0, 1001, 6})));
    RowHead* crop = cropCrossings(table, {0, 1, 5, 3});
    EXPECT_EQ(2, crossingRowCount(crop));
    freeCrossings(crop);
    freeCrossings(table);
}

TEST(RowCrossings, VerticalMirrorKeepsColumns)
{
    RowHead* table = tableOf(9, {{3, {1, 4}}, {4, {2, 5}}, {6, {7, 8}}});
    const PixelRect rect = {0, 2, 9, 7};
    EXPECT_EQ((Rows{{6, {1, 4}}, {5, {2, 5}}, {3, {7, 8}}}), takeRows(mirrorCrossingsVertically(table, rect)));
    freeCrossings(table);
}

TEST(RowCrossings, HorizontalMirrorLowersWhatReachesTheRightSide)
{
    RowHead* table = tableOf(4, {{1, {3, 4, 9}}, {2, {1, 2, 8}}});
    const PixelRect rect = {2, 0, 10, 3};
    EXPECT_EQ((Rows{{1, {3, 8, 9}}, {2, {4, 9, 9}}}), takeRows(mirrorCrossingsHorizontally(table, rect)));
    freeCrossings(table);
}

TEST(RowCrossings, MirroringTwiceGivesTheTableBack)
{
    std::mt19937 random(8);
    RowHead* table = createCrossings(50);
    for (int n = 0; n < 500; ++n)
        cross(table, 1 + (int)(random() % 48), 5 + (int)(random() % 90));
    PixelRect rect;
    ASSERT_TRUE(computeCrossingBounds(table, rect));
    RowHead* once = mirrorCrossingsHorizontally(table, rect);
    EXPECT_EQ(rowsOf(table), takeRows(mirrorCrossingsHorizontally(once, rect)));
    freeCrossings(once);
    once = mirrorCrossingsVertically(table, rect);
    EXPECT_EQ(rowsOf(table), takeRows(mirrorCrossingsVertically(once, rect)));
    freeCrossings(once);
    freeCrossings(table);
}

TEST(RowCrossings, BoundsLeaveOnePixelAroundAndNoneBelow)
{
    RowHead* table = tableOf(20, {{5, {7, 12}}, {8, {6, 30}}});
    PixelRect rect = {};
    ASSERT_TRUE(computeCrossingBounds(table, rect));
    EXPECT_EQ(5, rect.left);
    EXPECT_EQ(4, rect.top);
    EXPECT_EQ(31, rect.right);
    EXPECT_EQ(9, rect.bottom);
    freeCrossings(table);
}

TEST(RowCrossings, OneRowOrOneColumnHasNoBounds)
{
    for (const Rows& rows : {Rows{}, Rows{{5, {7, 12}}}, Rows{{5, {7}}, {8, {7}}}, Rows{{20, {3, 9}}}}) {
        RowHead* table = tableOf(20, rows);
        PixelRect rect = {1, 2, 3, 4};
        EXPECT_FALSE(computeCrossingBounds(table, rect));
        EXPECT_EQ(4, rect.bottom);
        freeCrossings(table);
    }
}

TEST(RowCrossings, ThreeThousandRowsOfTenAndOneVeryLongRow)
{
    RowHead* table = createCrossings(3000);
    for (int n = 0; n < 10; ++n)
        for (int row = 0; row < 3000; ++row)
            ASSERT_TRUE(cross(table, row, 1000 - 100 * n));
    for (int x = 32765; x > 1000; --x)
        ASSERT_TRUE(cross(table, 1500, x));  // to the left, against the order of the list
    const Rows rows = takeRows(table);
    EXPECT_EQ(3000u, rows.size());
    EXPECT_EQ((std::vector<int>{100, 200, 300, 400, 500, 600, 700, 800, 900, 1000}), rows.at(2999));
    EXPECT_EQ(10u + 32765 - 1000, rows.at(1500).size());
}
