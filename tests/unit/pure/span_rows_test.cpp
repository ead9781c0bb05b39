#include <gtest/gtest.h>

#include "selection/geometry/outline.h"
#include "selection/geometry/span_rows.h"
#include "tests/reference/outline_reference.h"

TEST(SpanRows, HoldEveryCrossingInOrder)
{
    std::mt19937 random(95);
    for (int n = 0; n < 60; ++n) {
        const std::vector<ReferencePoint> given = randomOutline(random, n, 50, 40, 1 + n);
        std::vector<PixelPoint> points;
        for (ReferencePoint p : given)
            points.push_back(PixelPoint{p.x, p.y});
        RowHead* table = crossingsOfPoints(40, points.data(), (int)points.size());
        const ReferenceCrossings expected = referenceOutline(40, 50, given, given.back()).crossings;
        const PixelRect rect = {n, -7, n + 50, 33};
        SpanOutline outline = {};
        ASSERT_TRUE(makeSpanOutline(table, rect, outline));
        freeCrossings(table);
        EXPECT_EQ(n, outline.rect.left);
        EXPECT_EQ(n + 50, outline.rect.right);
        EXPECT_EQ(0, outline.rect.top);
        EXPECT_EQ(40, outline.rect.bottom);
        const SpanTable& spans = outline.spans;
        ASSERT_EQ(41, spans.rowCount);
        for (int row = 0; row < spans.rowCount; ++row) {
            const RowSpans& r = spans.rows[row];
            std::vector<int> columns(r.crossings, r.crossings + r.count);
            for (int& column : columns)
                column -= n;
            EXPECT_EQ(expected.row(row), columns);
        }
        freeSpanOutline(outline);
        EXPECT_EQ(nullptr, outline.spans.rows);
    }
}

// To the resampler a column 0 is no crossing, and neither are those from the end mark on.
TEST(SpanRows, AreCrossingsToTheResamplerWhereverTheSelectionIs)
{
    const PixelPoint points[] = {{0, 0}, {9, 4}, {3, 9}};
    for (const int left : {-4000, -5, -4, -1, 0, 1, 2, 32700, 32757, 40000}) {
        RowHead* table = crossingsOfPoints(10, points, 3);
        SpanOutline outline = {};
        ASSERT_TRUE(makeSpanOutline(table, PixelRect{left, -20, left + 11, -10}, outline));
        EXPECT_EQ(11, outline.rect.right - outline.rect.left);
        for (int row = 0; row < outline.spans.rowCount; ++row) {
            const RowHead* node = table[row].next;
            for (int n = 0; n < outline.spans.rows[row].count; ++n, node = node->next) {
                const int column = outline.spans.rows[row].crossings[n];
                EXPECT_EQ(node->x, column - outline.rect.left) << left;
                EXPECT_GT(column, 0) << left;
                EXPECT_LT(column, CROSSING_END) << left;
            }
        }
        freeCrossings(table);
        freeSpanOutline(outline);
    }
}
