#include <gtest/gtest.h>

#include "selection/geometry/outline.h"
#include "selection/geometry/span_rows.h"
#include "tests/reference/outline_reference.h"

TEST(SpanRows, HoldEveryCrossingInOrder)
{
    std::mt19937 random(95);
    for (int n = 0; n < 60; n++) {
        const std::vector<ReferencePoint> given = randomOutline(random, n, 50, 40, 1 + n);
        std::vector<PixelPoint> points;
        for (ReferencePoint p : given)
            points.push_back(PixelPoint{p.x, p.y});
        RowHead* table = crossingsOfPoints(40, points.data(), (int)points.size());
        const ReferenceCrossings expected = referenceOutline(40, 50, given, given.back()).crossings;
        SpanTable spans = {};
        ASSERT_TRUE(makeSpanRows(table, spans));
        freeCrossings(table);
        ASSERT_EQ(41, spans.rowCount);
        for (int row = 0; row < spans.rowCount; row++) {
            const RowSpans& r = spans.rows[row];
            EXPECT_EQ(expected.row(row), std::vector<int>(r.crossings, r.crossings + r.count));
        }
        freeSpanRows(spans);
        EXPECT_EQ(nullptr, spans.rows);
    }
}
