#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <tuple>

#include "image/pixels/pixel_ops.h"
#include "selection/geometry/mask_trace.h"
#include "selection/geometry/outline.h"
#include "tests/reference/outline_reference.h"

// A mask in a block of exactly its size.
struct StoredMask {
    int width, height;
    std::vector<uint8_t> rows;

    explicit StoredMask(const reference::Picture& image)
        : width(image.width), height(image.height), rows(storedRows(image, 0))
    {
        rows.shrink_to_fit();
    }
    BitsView view() { return bottomUpView(rows.data(), width, height, (ptrdiff_t)rowStride(width, 24)); }
};

struct ReferenceTrace {
    TraceResult result;
    std::vector<ReferencePoint> points;
};

// The same walk on rows counted from the bottom, remembering every state.
static ReferenceTrace referenceTrace(const reference::Picture& mask, ReferencePoint origin)
{
    static const int moveX[8] = {-1, -1, -1, 0, 1, 1, 1, 0}, moveUp[8] = {1, 0, -1, -1, -1, 0, 1, 1};
    const int w = mask.width, h = mask.height;
    const auto blueAt = [&](int column, int stored) { return mask.at(column, h - 1 - stored).blue; };
    int startX = -1, startUp = -1;
    for (int stored = h - 1; stored >= 0 && startX < 0; --stored) {
        for (int column = 0; column < w && startX < 0; ++column) {
            const reference::Pixel p = mask.at(column, h - 1 - stored);
            if (p.blue == 0 && p.green == 0 && p.red == 0) startX = column, startUp = stored;
        }
    }
    if (startX < 0) return {TRACE_EMPTY, {}};
    const auto place = [&](int column, int stored) {
        return ReferencePoint{origin.x + column, origin.y + h - 1 - stored};
    };
    std::vector<ReferencePoint> points = {place(startX, startUp)};
    std::set<std::tuple<int, int, int>> seen;
    int x = startX, up = startUp, last = 3;
    for (;;) {
        if (!seen.insert({x, up, last}).second) return {TRACE_ENDLESS, {}};
        int move = last % 2 ? (last + 7) % 8 : (last + 6) % 8;
        const int stop = (last + 5) % 8;
        bool found = false;
        do {
            const int nx = x + moveX[move], nu = up + moveUp[move];
            found = nx >= 0 && nx < w && nu >= 0 && nu < h && blueAt(nx, nu) == 0;
            if (!found) move = (move + 1) % 8;
        } while (!found && move != stop);
        if (!found) return {TRACE_DEAD_END, {}};
        x += moveX[move];
        up += moveUp[move];
        last = move;
        points.push_back(place(x, up));
        if (x == startX && up == startUp) return {TRACE_CLOSED, points};
    }
}

// '#' is black, 'o' inside by its blue byte only.
static reference::Picture maskOf(const std::vector<const char*>& rows)
{
    reference::Picture mask((int)strlen(rows[0]), (int)rows.size());
    for (int y = 0; y < mask.height; ++y) {
        for (int x = 0; x < mask.width; ++x) {
            const char cell = rows[(size_t)y][x];
            const uint8_t value = cell == '#' ? 0 : 255;
            mask.at(x, y) = {cell == 'o' ? (uint8_t)0 : value, value, value};
        }
    }
    return mask;
}

static ReferenceTrace trace(const reference::Picture& mask, ReferencePoint origin)
{
    StoredMask stored(mask);
    PixelPoint* points = nullptr;
    int count = 7;
    ReferenceTrace traced = {traceMask(stored.view(), PixelPoint{origin.x, origin.y}, points, count), {}};
    for (int n = 0; n < count; ++n)
        traced.points.push_back({points[n].x, points[n].y});
    EXPECT_EQ(traced.result == TRACE_CLOSED, points != nullptr);
    freeOutlinePoints(points);
    return traced;
}

TEST(MaskTrace, RandomMasksMatchTheReference)
{
    std::mt19937 random(90);
    int results[5] = {};
    for (int n = 0; n < 20000; ++n) {
        reference::Picture mask(1 + (int)(random() % 9), 1 + (int)(random() % 9));
        const unsigned share = 1 + random() % 9;
        for (reference::Pixel& p : mask.pixels) {
            const uint8_t value = random() % 10 < share ? 0 : 255;
            p = {value, value, value};
            if (random() % 40 == 0) p.green = 128;  // inside by its blue byte, but no start
        }
        const ReferencePoint origin = {(int)(random() % 50) - 25, (int)(random() % 50) - 25};
        const ReferenceTrace expected = referenceTrace(mask, origin), actual = trace(mask, origin);
        ASSERT_EQ(expected.result, actual.result) << n;
        ASSERT_EQ(expected.points, actual.points) << n;
        results[actual.result]++;
    }
    for (TraceResult result : {TRACE_CLOSED, TRACE_EMPTY, TRACE_DEAD_END})
        EXPECT_GT(results[result], 0) << result;
}

TEST(MaskTrace, MasksThatTouchTheirOwnBorderAreFollowed)
{
    const std::vector<ReferencePoint> around = {{5, 5}, {5, 6}, {5, 7}, {6, 7}, {7, 7}, {7, 6}, {7, 5}, {6, 5}, {5, 5}};
    EXPECT_EQ(around, trace(maskOf({"###", "###", "###"}), {5, 5}).points);
}

TEST(MaskTrace, OnePixelHasNoOutline)
{
    EXPECT_EQ(TRACE_DEAD_END, trace(maskOf({"...", ".#.", "..."}), {0, 0}).result);
    EXPECT_EQ(TRACE_DEAD_END, trace(maskOf({"#"}), {0, 0}).result);
    EXPECT_EQ(TRACE_EMPTY, trace(maskOf({"..", ".."}), {0, 0}).result);
}

// The start is the first black pixel; a pixel above it that only the walk takes for inside leads away for good.
TEST(MaskTrace, WalkThatNeverComesBackIsGivenUp)
{
    EXPECT_EQ(TRACE_ENDLESS, trace(maskOf({".o##..#", "#.#.o##", "#####.#", ".##.#o."}), {0, 0}).result);
}

TEST(MaskTrace, LineOfOnePixelIsWalkedThereAndBack)
{
    for (const std::vector<const char*>& rows : {std::vector<const char*>{".###."}, {".#.", ".#.", ".#."}}) {
        const ReferenceTrace traced = trace(maskOf(rows), {0, 0});
        EXPECT_EQ(TRACE_CLOSED, traced.result);
        EXPECT_EQ(5u, traced.points.size());
    }
}

TEST(MaskTrace, TracedRegionIsTheMaskLessItsLastColumnAndFirstRow)
{
    const ReferenceTrace traced = trace(maskOf({".....", ".###.", ".###.", ".###."}), {10, 20});
    ASSERT_EQ(TRACE_CLOSED, traced.result);
    Outline outline = {};
    std::vector<PixelPoint> points;
    for (ReferencePoint p : traced.points)
        points.push_back({p.x, p.y});
    ASSERT_TRUE(replayOutline(outline, 100, points.data(), (int)points.size()));
    PixelRect rect = {};
    ASSERT_TRUE(computeCrossingBounds(outline.crossings, rect));
    EXPECT_EQ(10, rect.left);
    EXPECT_EQ(21, rect.top);
    EXPECT_EQ(14, rect.right);
    EXPECT_EQ(24, rect.bottom);
    EXPECT_TRUE(crossingsContain(outline.crossings, PixelPoint{12, 23}));
    EXPECT_FALSE(crossingsContain(outline.crossings, PixelPoint{13, 23}));
    freeOutline(outline);
}
