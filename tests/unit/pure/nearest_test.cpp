#include "image/pixels/nearest.h"

#include <algorithm>

#include "tests/unit/pure/stored_image.h"
#include "tests/unit/vector_levels.h"

static std::vector<int> tableOf(int from, int to)
{
    std::vector<uint32_t> table((size_t)to, 0xCCCCCCCC);
    nearestTable(table.data(), from, to);
    return {table.begin(), table.end()};
}

TEST(NearestTable, SmallTablesByHand)
{
    EXPECT_EQ((std::vector<int>{0}), tableOf(1, 1));
    EXPECT_EQ((std::vector<int>{0, 0, 0}), tableOf(1, 3));
    EXPECT_EQ((std::vector<int>{0}), tableOf(7, 1));
    EXPECT_EQ((std::vector<int>{0, 1, 2}), tableOf(3, 3));
    EXPECT_EQ((std::vector<int>{0, 1, 1}), tableOf(2, 3));
    EXPECT_EQ((std::vector<int>{0, 1}), tableOf(3, 2));  // err 0 takes the diagonal first, then column 2 is skipped
    EXPECT_EQ((std::vector<int>{0, 2, 4}), tableOf(6, 3));
}

static void expectTableMatchesReference(int from, int to)
{
    const std::vector<int16_t> expected = referenceNearestTable(from, to);
    ASSERT_EQ((size_t)to, expected.size()) << from << ' ' << to;
    EXPECT_EQ(std::vector<int>(expected.begin(), expected.end()), tableOf(from, to)) << from << ' ' << to;
}

TEST(NearestTable, MatchesThe16BitRuleUpTo8192)
{
    for (int from = 1; from <= 40; ++from) {
        for (int to = 1; to <= 40; ++to)
            expectTableMatchesReference(from, to);
    }
    std::mt19937 random(18);
    for (int n = 0; n < 300; ++n)
        expectTableMatchesReference(1 + random() % 8192, 1 + random() % 8192);
    for (int edge : {1, 2, 4096, 8191, 8192}) {
        expectTableMatchesReference(8192, edge);
        expectTableMatchesReference(edge, 8192);
    }
}

TEST(NearestTable, AboveThe16BitRangeStaysInside)
{
    for (auto [from, to] : {std::pair{100000, 30}, {30, 100000}, {100000, 99999}, {70000, 70000}}) {
        const std::vector<int> table = tableOf(from, to);
        EXPECT_EQ(0, table.front());
        EXPECT_LT(table.back(), from);
        EXPECT_GE(table.back(), (from - 1) / 100 * 98);
        EXPECT_TRUE(std::is_sorted(table.begin(), table.end()));
    }
}

class ScaleNearest : public VectorLevels {};
FOR_EACH_VECTOR_LEVEL(ScaleNearest);

TEST_P(ScaleNearest, MatchesTheReference)
{
    std::mt19937 random(19);
    for (int n = 0; n < 1500; ++n) {
        const reference::Picture source = randomReference(random, 1 + random() % 20, 1 + random() % 20);
        const int width = 1 + (int)(random() % 40), height = 1 + (int)(random() % 40);
        StoredImage from(source), to(reference::Picture(width, height));
        ASSERT_TRUE(scaleNearest(to.view(), from.view()));
        expectImage(referenceScale(source, width, height), to);
    }
}

TEST_P(ScaleNearest, IsAnchoredAtTheBottomRow)
{
    reference::Picture source(1, 4);
    for (int y = 0; y < 4; ++y)
        source.at(0, y) = {(uint8_t)(10 + y), 0, 0};
    StoredImage from(source), to(reference::Picture(1, 1));
    ASSERT_TRUE(scaleNearest(to.view(), from.view()));
    EXPECT_EQ(13, to.rows[0]);
}

static void expectScaled(std::mt19937& random, int fromWidth, int fromHeight, int width, int height)
{
    const reference::Picture source = randomReference(random, fromWidth, fromHeight);
    StoredImage from(source), to(reference::Picture(width, height));
    ASSERT_TRUE(scaleNearest(to.view(), from.view()));
    ASSERT_EQ(storedRows(referenceScale(source, width, height), ROW_PADDING), to.rows)
        << fromWidth << " columns to " << width;
}

// Windows of both sizes, and steps too wide for either.
TEST_P(ScaleNearest, MatchesTheReferenceAtEveryWidthAndManySteps)
{
    std::mt19937 random(20);
    for (int width = 1; width <= 130; ++width) {
        for (int twelfths : {1, 5, 11, 12, 13, 24, 29, 47, 71, 140})
            ASSERT_NO_FATAL_FAILURE(expectScaled(random, std::max(width * twelfths / 12, 1), 2, width, 3));
        ASSERT_NO_FATAL_FAILURE(expectScaled(random, 1 + (int)(random() % 700), 3, width, 2));
    }
}
