#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <vector>

#include "tests/reference/painting_reference.h"
#include "tools/kernels/digital_line.h"

using Points = std::vector<std::pair<int, int>>;

static Points walk(PixelPoint from, PixelPoint to)
{
    Points points;
    DigitalLine line = beginLine(from, to);
    do
        points.emplace_back(line.x, line.y);
    while (nextPoint(line));
    return points;
}

TEST(DigitalLine, FastDragHasElevenPoints)
{
    const Points expected = {{10, 10}, {11, 10}, {12, 11}, {13, 11}, {14, 11}, {15, 12},
                             {16, 12}, {17, 12}, {18, 12}, {19, 13}, {20, 13}};
    EXPECT_EQ(expected, walk({10, 10}, {20, 13}));
}

TEST(DigitalLine, SinglePoint)
{
    EXPECT_EQ((Points{{-3, 7}}), walk({-3, 7}, {-3, 7}));
}

TEST(DigitalLine, TieGoesToThePointFurtherAlong)
{
    EXPECT_EQ((Points{{0, 0}, {1, 1}, {2, 1}}), walk({0, 0}, {2, 1}));
    EXPECT_EQ((Points{{2, 1}, {1, 0}, {0, 0}}), walk({2, 1}, {0, 0}));
}

TEST(DigitalLine, EveryDirectionTakesTheNearestPoint)
{
    for (int y = -17; y <= 17; ++y)
        for (int x = -17; x <= 17; ++x)
            ASSERT_EQ(reference::linePoints(5, -4, 5 + x, -4 + y), walk({5, -4}, {5 + x, -4 + y})) << x << "," << y;
}

static void expectNearLine(PixelPoint from, PixelPoint to)
{
    ASSERT_TRUE(isNear(from) && isNear(to));
    NearLine near = beginNearLine(from, to);
    DigitalLine line = beginLine(from, to);
    ASSERT_EQ(line.left, near.left);
    for (int n = 0; n < 1000; ++n) {
        ASSERT_EQ(line.x, near.x);
        ASSERT_EQ(line.y, near.y);
        const bool more = nextPoint(line);
        ASSERT_EQ(more, nextPoint(near));
        if (!more) return;
    }
}

TEST(DigitalLine, NearLinesTakeTheSameSteps)
{
    for (int y = -9; y <= 9; ++y)
        for (int x = -9; x <= 9; ++x)
            expectNearLine({3, -2}, {3 + x, -2 + y});
    std::mt19937 random(5);
    for (int n = 0; n < 300; ++n) {
        const int shift = 4 + n % 20;
        expectNearLine({(int)random() >> shift, (int)random() >> 4}, {(int)random() >> 4, (int)random() >> shift});
    }
}

TEST(DigitalLine, PointsAreNearWhereNothingOverflows)
{
    const int limit = 1 << 28;
    EXPECT_TRUE(isNear({-limit, limit - 1}));
    expectNearLine({-limit, limit - 1}, {limit - 1, -limit});
    for (const int far : {limit, -limit - 1, INT_MAX, INT_MIN}) {
        EXPECT_FALSE(isNear({far, 0}));
        EXPECT_FALSE(isNear({0, far}));
    }
}

TEST(DigitalLine, LongestLineDoesNotOverflow)
{
    DigitalLine line = beginLine({INT_MIN, INT_MAX}, {INT_MAX, INT_MIN + 1});
    EXPECT_EQ(4294967295, line.left);
    for (int step = 1; step <= 1000; ++step) {
        ASSERT_TRUE(nextPoint(line));
        ASSERT_EQ(INT_MIN + step, line.x);
        ASSERT_EQ(INT_MAX - step, line.y);
    }
}

TEST(DigitalLine, BenchmarkStrokeHas9208Points)
{
    const PixelPoint corners[] = {{100, 100}, {2901, 1899}, {2898, 100}, {97, 1901}, {100, 98}};
    size_t points = 0;
    for (int k = 0; k < 4; ++k)
        points += walk(corners[k], corners[k + 1]).size();
    EXPECT_EQ(9208u, points);
}
