// The image at the press, kept tile by tile. The oracle is a copy of the whole image.
#include "tools/kernels/stroke_tiles.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/unit/pure/guarded_image.h"

using reference::Picture;

struct StrokeTiles : testing::Test {
    Dice dice = {1};
    Picture before = {};
    GuardedImage image = {}, kept = {};
    GuardedMap coverage = {};
    std::vector<uint8_t> marks;

    void start(int width, int height)
    {
        before = randomPicture(dice, width, height);
        image = imageOf(before);
        kept = imageOf(plainPicture(width, height, {1, 2, 3}));
        coverage = mapOf(plainGrid(width, height, 99));
        marks.assign(strokeTileCount(width, height), 0);
    }
    StrokeStart stroke() { return {kept.view(), coverage.view(), marks.data()}; }
    // Spoils the image inside a rectangle, and expects the coverage to be clear there.
    void paint(PixelRect rect)
    {
        for (int y = std::max(rect.top, 0); y < std::min(rect.bottom, image.height); ++y) {
            for (int x = std::max(rect.left, 0); x < std::min(rect.right, image.width); ++x) {
                ASSERT_EQ(0, rowOf(coverage.view(), y)[x]);
                rowOf(image.view(), y)[x * 3 + dice.upTo(2)] ^= 0x55;
            }
        }
    }
    void expectStart(int left, int top, int width, int height)
    {
        GuardedImage patch = imageOf(plainPicture(width, height, {0, 0, 0}));
        copyFromStart(patch.view(), image.view(), stroke(), left, top);
        Picture expected = plainPicture(width, height, {0, 0, 0});
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                expected.at(x, y) = before.at(left + x, top + y);
        ASSERT_TRUE(imageOf(expected).bytes == patch.bytes) << left << " " << top << " " << width << " " << height;
    }
};

TEST_F(StrokeTiles, WhatWasPaintedComesBackWhateverTheTilesAre)
{
    for (int round = 0; round < 300; ++round) {
        start(dice.between(1, 400), dice.between(1, 300));
        for (int dab = dice.upTo(12); dab > 0; --dab) {
            const int left = dice.between(-90, 410), top = dice.between(-90, 310);
            const PixelRect rect = {left, top, left + dice.between(0, 96), top + dice.between(0, 96)};
            keepTiles(stroke(), image.view(), rect);
            paint(rect);
        }
        const int left = dice.upTo(image.width - 1), top = dice.upTo(image.height - 1);
        expectStart(left, top, dice.between(1, image.width - left), dice.between(1, image.height - top));
        expectStart(0, 0, image.width, image.height);
    }
}

TEST_F(StrokeTiles, EveryDabOfALineIsKeptBeforeItIsPainted)
{
    for (int round = 0; round < 150; ++round) {
        start(dice.between(1, 500), dice.between(1, 500));
        const int width = dice.between(1, 48), height = dice.between(1, 48);
        const PixelPoint from = {dice.between(-100, 600), dice.between(-100, 600)};
        const PixelPoint to = {dice.between(-100, 600), dice.between(-100, 600)};
        keepTilesAlong(stroke(), image.view(), from, to, width, height);
        for (auto [x, y] : reference::linePoints(from.x, from.y, to.x, to.y))
            paint({x - width / 2, y - height / 2, x - width / 2 + width, y - height / 2 + height});
        expectStart(0, 0, image.width, image.height);
    }
}

// Where the stroke does not come nothing is copied, however long it is.
TEST_F(StrokeTiles, LongLineKeepsItsNeighbourhoodOnly)
{
    start(1600, 1600);
    keepTilesAlong(stroke(), image.view(), {10, 10}, {1590, 1590}, 16, 16);
    const auto tiles = std::count(marks.begin(), marks.end(), 1);
    EXPECT_GE(tiles, 25);
    EXPECT_LE(tiles, 25 * 5) << "of 625";
}

TEST_F(StrokeTiles, WithoutACoverageMapOnlyPixelsAreKept)
{
    start(200, 100);
    StrokeStart plain = stroke();
    plain.coverage.row0 = nullptr;
    keepTiles(plain, image.view(), {10, 10, 190, 90});
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 200; ++x)
            ASSERT_EQ(99, rowOf(coverage.view(), y)[x]);
    expectStart(0, 0, 200, 100);
}
