// Whole images, selections and outlines against the reference; rows as they are stored.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "color/kernels/adjust.h"
#include "color/kernels/adjust_methods.h"
#include "color/kernels/adjust_selection.h"
#include "color/kernels/span_reshape.h"
#include "tests/reference/colour_reference.h"
#include "tests/unit/pure/given_values.h"
#include "tests/unit/vector_levels.h"

using reference::Crossings;
using reference::StoredPicture;
using reference::Values;

static StoredPicture randomImage(std::mt19937& random, int width, int height)
{
    StoredPicture image = {width, height, std::vector<uint8_t>((size_t)reference::strideOf(width) * height)};
    for (uint8_t& byte : image.bytes) {
        byte = (uint8_t)random();
    }
    return image;
}

// Runs of inside and outside; the other bytes of a mask pixel are noise and must not matter.
static StoredPicture randomMask(std::mt19937& random, int width, int height)
{
    StoredPicture mask = randomImage(random, width, height);
    int run = 0;
    uint8_t red = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, --run) {
            if (run <= 0) {
                run = 1 + (int)(random() % 7);
                red = random() & 1 ? 0 : (uint8_t)(1 + random() % 255);
            }
            mask.bytes[(size_t)y * reference::strideOf(width) + (size_t)x * 3 + 2] = red;
        }
    }
    return mask;
}

static BitsView viewOf(StoredPicture& image)
{
    const int stride = reference::strideOf(image.width);
    return BitsView{image.bytes.data() + (ptrdiff_t)stride * (image.height - 1), -stride, image.width, image.height};
}

static Values randomValues(std::mt19937& random)
{
    return Values{(int)(random() % 201) - 100, (int)(random() % 201) - 100, random() % 3 ? (int)(random() % 101) : 50,
                  random() % 3 ? (int)(random() % 255) - 127 : 0, random() % 2 ? (int)(random() % 5) : 0};
}

TEST(AdjustImage, EqualsTheReferenceAndZeroesThePaddingOfEveryRow)
{
    std::mt19937 random(10);
    for (int i = 0; i < 300; ++i) {
        const Values v = randomValues(random);
        StoredPicture image = randomImage(random, 1 + (int)(random() % 90), 1 + (int)(random() % 12));
        StoredPicture target = randomImage(random, image.width, image.height);
        const StoredPicture before = image;
        const StoredPicture expected = reference::adjustImage(image, v);
        const ColourAdjustment adjustment = imageAdjustment(given(v));

        adjustImage(adjustment, viewOf(image), viewOf(target));
        ASSERT_EQ(expected.bytes, target.bytes) << "case " << i;
        ASSERT_EQ(before.bytes, image.bytes) << "case " << i;
        adjustImage(adjustment, viewOf(image), viewOf(image));
        ASSERT_EQ(expected.bytes, image.bytes) << "in place, case " << i;
    }
}

TEST(AdjustImage, RowsWiderThanOneBlockAreWhole)
{
    std::mt19937 random(11);
    StoredPicture image = randomImage(random, 9001, 2);
    const Values v = {5, -5, 20, 44, 0};
    const StoredPicture expected = reference::adjustImage(image, v);
    adjustImage(imageAdjustment(given(v)), viewOf(image), viewOf(image));
    EXPECT_EQ(expected.bytes, image.bytes);
}

// The ways of large blocks, at every alignment and with every rest: those of the level against the plain ones.
class LargeColours : public VectorLevels {};
FOR_EACH_VECTOR_LEVEL(LargeColours);

static const ColourMethod& methodOfLevel(int level)
{
    const ColourMethod* const methods[] = {&COLOUR_PLAIN,
#ifdef VECTOR_CODE
                                           &COLOUR_SSE2, &COLOUR_AVX2, &COLOUR_AVX512
#endif
    };
    return *methods[level];
}

TEST_P(LargeColours, EveryLengthAndAlignment)
{
    constexpr size_t GUARD = 64;
    const ColourMethod& method = methodOfLevel(GetParam());
    const ColourAdjustment adjustment = imageAdjustment({-20, -10, 35, 20, 0});
    std::mt19937 random(20);
    std::vector<uint8_t> source(GUARD * 2 + 30000 * 3);
    for (uint8_t& byte : source)
        byte = (uint8_t)random();
    for (int i = 0; i < 160; ++i) {
        const size_t pixels = i < 131 ? (size_t)i : random() % 30000;
        const size_t from = random() % GUARD, to = i % GUARD;
        std::vector<uint8_t> expected(source.size(), 0xA5), actual = expected;
        COLOUR_PLAIN.colourPixels(adjustment, source.data() + from, expected.data() + to, pixels);
        method.colourLarge(adjustment, source.data() + from, actual.data() + to, pixels);
        ASSERT_EQ(expected, actual) << pixels << " pixels from " << from << " to " << to;
        COLOUR_PLAIN.toneBytes(adjustment, source.data() + from, expected.data() + to, pixels * 3);
        method.toneLarge(adjustment, source.data() + from, actual.data() + to, pixels * 3);
        ASSERT_EQ(expected, actual) << "tone of " << pixels << " pixels from " << from << " to " << to;
    }
}

// More than the caches keep: taken as one block where the rows lie so. The reference walks the same rows as a few
// small images.
TEST(AdjustImage, LargeImagesAreTheSameWithPaddingAndWithout)
{
    std::mt19937 random(21);
    const int rows = 8, copies = 120;
    for (int width : {3000, 3001})
        for (int hue : {0, 20}) {
            const Values v = {-20, -10, 50, hue, 0};
            const StoredPicture part = randomImage(random, width, rows);
            const StoredPicture expected = reference::adjustImage(part, v);
            StoredPicture image = {width, rows * copies, {}};
            for (int n = 0; n < copies; ++n)
                image.bytes.insert(image.bytes.end(), part.bytes.begin(), part.bytes.end());
            StoredPicture target = image;
            std::fill(target.bytes.begin(), target.bytes.end(), (uint8_t)0x5A);
            adjustImage(imageAdjustment(given(v)), viewOf(image), viewOf(target));
            adjustImage(imageAdjustment(given(v)), viewOf(image), viewOf(image));
            for (size_t at = 0; at < target.bytes.size(); at += expected.bytes.size()) {
                ASSERT_EQ(0, memcmp(expected.bytes.data(), target.bytes.data() + at, expected.bytes.size()));
                ASSERT_EQ(0, memcmp(expected.bytes.data(), image.bytes.data() + at, expected.bytes.size()))
                    << "in place";
            }
        }
}

struct SelectionCase {
    StoredPicture source, sourceMask, target, targetMask;
};

static SelectionCase randomSelection(std::mt19937& random, int sourceWidth, int sourceHeight, int width, int height)
{
    return SelectionCase{randomImage(random, sourceWidth, sourceHeight), randomMask(random, sourceWidth, sourceHeight),
                         randomImage(random, width, height), randomMask(random, width, height)};
}

static void runSelection(SelectionCase& c, const Values& v)
{
    ASSERT_TRUE(adjustSelection(selectionAdjustment(given(v)), MaskedPixels{viewOf(c.source), viewOf(c.sourceMask)},
                                MaskedPixels{viewOf(c.target), viewOf(c.targetMask)}));
}

TEST(AdjustSelection, EqualsTheReferenceAtRandomSizes)
{
    std::mt19937 random(12);
    for (int i = 0; i < 600; ++i) {
        const int sourceWidth = 1 + (int)(random() % 40), sourceHeight = 1 + (int)(random() % 14);
        const bool sameSize = random() % 3 == 0;
        SelectionCase c =
            randomSelection(random, sourceWidth, sourceHeight, sameSize ? sourceWidth : 1 + (int)(random() % 80),
                            sameSize ? sourceHeight : 1 + (int)(random() % 20));
        SelectionCase expected = c;
        const Values v = randomValues(random);
        reference::adjustSelection(expected.source, expected.sourceMask, expected.target, expected.targetMask, v);
        runSelection(c, v);
        ASSERT_EQ(expected.target.bytes, c.target.bytes) << "case " << i;
        ASSERT_EQ(expected.targetMask.bytes, c.targetMask.bytes) << "case " << i;
        ASSERT_EQ(expected.source.bytes, c.source.bytes) << "case " << i;
        ASSERT_EQ(expected.sourceMask.bytes, c.sourceMask.bytes) << "case " << i;
    }
}

TEST(AdjustSelection, ATargetTwiceTheSizeRepeatsEachPixelAndRowTwice)
{
    std::mt19937 random(13);
    SelectionCase c = randomSelection(random, 3, 2, 6, 4);
    for (size_t i = 2; i < c.sourceMask.bytes.size(); ++i) {
        c.sourceMask.bytes[i] = 0;
    }
    runSelection(c, Values{0, 0, 50, 0, 0});
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 18; ++x) {
            const int sourceByte = y / 2 * 12 + x / 6 * 3 + x % 3;
            EXPECT_EQ(c.source.bytes[sourceByte], c.target.bytes[y * 20 + x]);
        }
    }
}

TEST(AdjustSelection, OnlyTheRedByteOfTheMaskDecides)
{
    SelectionCase c = {{2, 1, {1, 2, 3, 4, 5, 6, 0, 0}},
                       {2, 1, {0, 0, 255, 255, 255, 0, 0, 0}},  // outside, inside
                       {2, 1, {70, 71, 72, 73, 74, 75, 76, 77}},
                       {2, 1, {9, 9, 9, 9, 9, 9, 9, 9}}};
    runSelection(c, Values{0, 0, 50, 0, 0});
    EXPECT_EQ((std::vector<uint8_t>{70, 71, 72, 4, 5, 6, 76, 77}), c.target.bytes);
    EXPECT_EQ((std::vector<uint8_t>{0, 0, 255, 255, 255, 0, 9, 9}), c.targetMask.bytes);
}

TEST(AdjustSelection, TheSourceMaskMayBeTheTargetMaskAtEqualSizes)
{
    std::mt19937 random(14);
    SelectionCase c = randomSelection(random, 23, 9, 23, 9);
    SelectionCase expected = c;
    const Values v = {-30, 20, 10, 100, 2};
    reference::adjustSelection(expected.source, expected.sourceMask, expected.target, expected.targetMask, v);
    const StoredPicture maskBefore = c.sourceMask;
    ASSERT_TRUE(adjustSelection(selectionAdjustment(given(v)), MaskedPixels{viewOf(c.source), viewOf(c.sourceMask)},
                                MaskedPixels{viewOf(c.target), viewOf(c.sourceMask)}));
    EXPECT_EQ(expected.target.bytes, c.target.bytes);
    EXPECT_EQ(maskBefore.bytes, c.sourceMask.bytes);
}

TEST(AdjustSelection, RepeatedStepsStartFromTheSourceAndDoNotAddUp)
{
    std::mt19937 random(15);
    SelectionCase once = randomSelection(random, 20, 10, 31, 7);
    SelectionCase twice = once;
    runSelection(once, Values{-10, 5, 30, 40, 1});
    runSelection(twice, Values{60, -70, 90, -100, 4});
    runSelection(twice, Values{-10, 5, 30, 40, 1});
    EXPECT_EQ(once.target.bytes, twice.target.bytes);
}

// --- spans ---

struct MaskOutline {
    Crossings crossings;
    reference::Rect rect;
};

static MaskOutline randomOutline(std::mt19937& random, int imageWidth, int imageHeight)
{
    MaskOutline outline;
    const int width = 1 + (int)(random() % 24), height = 1 + (int)(random() % 12);
    outline.rect.left = (int)(random() % (imageWidth - width + 1));
    outline.rect.top = (int)(random() % (imageHeight - height + 1));
    outline.rect.right = outline.rect.left + width;
    outline.rect.bottom = outline.rect.top + height;
    outline.crossings.resize(imageHeight);
    for (int y = outline.rect.top; y < outline.rect.bottom; ++y) {
        int x = outline.rect.left;
        while (x < outline.rect.right && random() % 4) {
            const int entry = x + (int)(random() % 6), exit = entry + 1 + (int)(random() % 9);
            if (exit > outline.rect.right) break;
            outline.crossings[y].push_back(entry);
            outline.crossings[y].push_back(exit);
            x = exit + 1;
        }
    }
    return outline;
}

static std::vector<RowSpans> rowsOf(const Crossings& crossings)
{
    std::vector<RowSpans> rows;
    for (const std::vector<int>& row : crossings) {
        rows.push_back(RowSpans{row.data(), (int)row.size()});
    }
    return rows;
}

static void reshape(SelectionCase& c, const MaskOutline& from, const MaskOutline& onto)
{
    const std::vector<RowSpans> fromRows = rowsOf(from.crossings), ontoRows = rowsOf(onto.crossings);
    reshapeSelectionSpans(MaskedPixels{viewOf(c.source), viewOf(c.sourceMask)},
                          MaskedPixels{viewOf(c.target), viewOf(c.targetMask)},
                          SpanOutline{{fromRows.data(), (int)fromRows.size()},
                                      {from.rect.left, from.rect.top, from.rect.right, from.rect.bottom}},
                          SpanOutline{{ontoRows.data(), (int)ontoRows.size()},
                                      {onto.rect.left, onto.rect.top, onto.rect.right, onto.rect.bottom}});
}

static void expectReshaped(SelectionCase c, const MaskOutline& from, const MaskOutline& onto, int number)
{
    SelectionCase expected = c;
    reference::reshapeSpans(expected.source, expected.sourceMask, expected.target, expected.targetMask, from.crossings,
                            from.rect, onto.crossings, onto.rect);
    reshape(c, from, onto);
    ASSERT_EQ(expected.target.bytes, c.target.bytes) << "case " << number;
    ASSERT_EQ(expected.targetMask.bytes, c.targetMask.bytes) << "case " << number;
}

TEST(ReshapeSpans, EqualsTheReferenceOnRandomOutlines)
{
    std::mt19937 random(16);
    for (int i = 0; i < 2000; ++i) {
        const MaskOutline from = randomOutline(random, 40, 30), onto = randomOutline(random, 40, 30);
        SelectionCase c = randomSelection(random, from.rect.right - from.rect.left, from.rect.bottom - from.rect.top,
                                          onto.rect.right - onto.rect.left, onto.rect.bottom - onto.rect.top);
        ASSERT_NO_FATAL_FAILURE(expectReshaped(c, from, onto, i));
    }
}

// Images whose sizes do not fit their rectangles, and crossings outside them: nothing may be overrun.
TEST(ReshapeSpans, StaysInsideItsImagesWhateverTheOutlines)
{
    std::mt19937 random(17);
    for (int i = 0; i < 2000; ++i) {
        MaskOutline from = randomOutline(random, 40, 30), onto = randomOutline(random, 40, 30);
        for (Crossings* crossings : {&from.crossings, &onto.crossings}) {
            for (std::vector<int>& row : *crossings) {
                if (random() % 8 == 0) row = {(int)(random() % 60) - 10, (int)(random() % 60)};
                if (random() % 16 == 0) row.push_back(32766);
            }
        }
        SelectionCase c = randomSelection(random, 1 + (int)(random() % 30), 1 + (int)(random() % 20),
                                          1 + (int)(random() % 30), 1 + (int)(random() % 20));
        ASSERT_NO_FATAL_FAILURE(expectReshaped(c, from, onto, i));
    }
}

static MaskOutline oneRow(std::vector<int> crossings, int left, int right)
{
    return MaskOutline{{std::move(crossings)}, {left, 0, right, 1}};
}

static SelectionCase countedRow(int sourceWidth, int targetWidth)
{
    SelectionCase c;
    c.source = {sourceWidth, 1, std::vector<uint8_t>((size_t)reference::strideOf(sourceWidth))};
    for (int x = 0; x < sourceWidth; ++x) {
        c.source.bytes[(size_t)x * 3] = (uint8_t)(x + 1);
    }
    c.sourceMask = {sourceWidth, 1, std::vector<uint8_t>(c.source.bytes.size(), 0)};
    c.target = {targetWidth, 1, std::vector<uint8_t>((size_t)reference::strideOf(targetWidth), 0xEE)};
    c.targetMask = c.target;
    return c;
}

static std::vector<int> blues(const StoredPicture& image)
{
    std::vector<int> values;
    for (int x = 0; x < image.width; ++x) {
        values.push_back(image.bytes[(size_t)x * 3]);
    }
    return values;
}

TEST(ReshapeSpans, StretchesTheSpanSoThatItsEndsMeet)
{
    SelectionCase c = countedRow(4, 9);
    reshape(c, oneRow({10, 14}, 10, 14), oneRow({21, 28}, 20, 29));
    EXPECT_EQ((std::vector<int>{0xEE, 1, 1, 2, 2, 3, 3, 4, 0xEE}), blues(c.target));
    EXPECT_EQ((std::vector<int>{255, 0, 0, 0, 0, 0, 0, 0, 255}), blues(c.targetMask));
}

TEST(ReshapeSpans, RowsWithEquallyManySpansBelongTogetherSpanBySpan)
{
    SelectionCase c = countedRow(6, 6);
    reshape(c, oneRow({1, 3, 4, 6}, 1, 7), oneRow({1, 3, 4, 6}, 1, 7));
    EXPECT_EQ((std::vector<int>{1, 2, 0xEE, 4, 5, 0xEE}), blues(c.target));
}

TEST(ReshapeSpans, OtherwiseEverySpanOfARowTakesTheFirstSourcePair)
{
    SelectionCase c = countedRow(6, 6);
    reshape(c, oneRow({1, 3}, 1, 7), oneRow({1, 3, 4, 6}, 1, 7));
    EXPECT_EQ((std::vector<int>{1, 2, 0xEE, 1, 2, 0xEE}), blues(c.target));
}

TEST(ReshapeSpans, APairWithAMissingValueIsPassedOver)
{
    SelectionCase c = countedRow(6, 2);
    reshape(c, oneRow({0, 2, 3, 32766, 4, 6}, 0, 6), oneRow({1, 3}, 1, 3));
    EXPECT_EQ((std::vector<int>{5, 6}), blues(c.target));
}

TEST(ReshapeSpans, WithoutASourcePairTheSpanStaysOutside)
{
    SelectionCase c = countedRow(6, 2);
    reshape(c, oneRow({0, 2}, 0, 6), oneRow({1, 3}, 1, 3));
    EXPECT_EQ((std::vector<int>{0xEE, 0xEE}), blues(c.target));
    EXPECT_EQ((std::vector<int>{255, 255}), blues(c.targetMask));
}
