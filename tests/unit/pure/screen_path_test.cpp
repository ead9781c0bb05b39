// A dotted line drawn piece by piece against the same line drawn whole, pixel by pixel.
#include "selection/geometry/screen_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "tests/unit/pure/guarded_image.h"

constexpr int SIDE = 120;

// 0: nothing there, 1: black, 2: white.
using Screen = std::vector<uint8_t>;

static void putDot(Screen& screen, int x, int y, int length)
{
    if (x >= 0 && y >= 0 && x < SIDE && y < SIDE) screen[(size_t)(y * SIDE + x)] = length / 3 % 2 ? 1 : 2;
}

// Three white, three black, on and on; without the last pixel.
static void drawLine(Screen& screen, const PixelPoint* points, int count)
{
    int length = 0;
    for (int i = 1; i < count; ++i) {
        const PixelPoint a = points[i - 1], b = points[i];
        const int steps = std::max(abs(b.x - a.x), abs(b.y - a.y));
        for (int n = 0; n < steps; ++n)
            putDot(screen, a.x + (b.x - a.x) * n / steps, a.y + (b.y - a.y) * n / steps, length++);
    }
}

static std::vector<PixelPoint> wander(Dice& dice, int count, int step)
{
    std::vector<PixelPoint> points = {{dice.upTo(SIDE), dice.upTo(SIDE)}};
    while ((int)points.size() < count) {
        const PixelPoint last = points.back();
        points.push_back({std::min(std::max(last.x + dice.between(-step, step), -40), SIDE + 40),
                          std::min(std::max(last.y + dice.between(-step, step), -40), SIDE + 40)});
    }
    return points;
}

TEST(ScreenPath, PiecesShowWhatTheWholeLineShows)
{
    Dice dice = {3};
    size_t drawn = 0, all = 0;
    for (int round = 0; round < 400; ++round) {
        const std::vector<PixelPoint> points = wander(dice, dice.between(1, 600), dice.between(1, 9));
        const int left = dice.upTo(SIDE - 1), top = dice.upTo(SIDE - 1);
        const PixelRect seen = {left, top, dice.between(left + 1, SIDE), dice.between(top + 1, SIDE)};
        Screen whole(SIDE * SIDE), pieces(SIDE * SIDE);
        drawLine(whole, points.data(), (int)points.size());
        PathWalk walk = {points.data(), (int)points.size(), seen, 0};
        int last = 0;
        for (PathPiece piece; nextPiece(walk, piece); last = piece.end - 1) {
            ASSERT_LE(last, piece.first);
            ASSERT_LT(piece.first + 1, piece.end);
            ASSERT_LE(piece.end, (int)points.size());
            drawLine(pieces, points.data() + piece.first, piece.end - piece.first);
            drawn += (size_t)(piece.end - piece.first);
        }
        all += points.size();
        for (int y = seen.top; y < seen.bottom; ++y)
            for (int x = seen.left; x < seen.right; ++x)
                ASSERT_EQ(whole[(size_t)(y * SIDE + x)], pieces[(size_t)(y * SIDE + x)])
                    << round << ' ' << x << ' ' << y;
    }
    EXPECT_LT(drawn, all * 3 / 4) << "much of what is not seen is left out";
}

TEST(ScreenPath, OfALongLineOnlyWhatIsNearIsDrawn)
{
    std::vector<PixelPoint> points;
    for (int x = 0; x < 100000; ++x)
        points.push_back({x, 50});
    PathWalk walk = {points.data(), (int)points.size(), {70000, 0, 70010, 100}, 0};
    PathPiece piece;
    ASSERT_TRUE(nextPiece(walk, piece));
    EXPECT_LE(piece.first, 70000);
    EXPECT_GT(piece.end, 70010);
    EXPECT_LE(piece.end - piece.first, 10 + 3 * DOT_PERIOD);
    EXPECT_EQ(0, piece.first % DOT_PERIOD);
    EXPECT_FALSE(nextPiece(walk, piece));
}

TEST(ScreenPath, PointsThatStayWhereTheyAreAreDropped)
{
    std::vector<PixelPoint> points = {{1, 1}, {1, 1}, {2, 1}, {2, 1}, {2, 1}, {1, 1}, {1, 2}, {1, 2}};
    ASSERT_EQ(4, dropRepeats(points.data(), (int)points.size()));
    const PixelPoint kept[] = {{1, 1}, {2, 1}, {1, 1}, {1, 2}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(kept[i].x, points[(size_t)i].x) << i;
        EXPECT_EQ(kept[i].y, points[(size_t)i].y) << i;
    }
    EXPECT_EQ(0, dropRepeats(points.data(), 0));
    EXPECT_EQ(1, dropRepeats(points.data(), 1));
}
