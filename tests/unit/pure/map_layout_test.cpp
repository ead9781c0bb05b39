// The small map: where it lies, what its frame encloses, and that a part of its pixels can be made anew.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "canvas/view/map_layout.h"
#include "tests/unit/pure/guarded_image.h"

static CanvasView zoomed(ViewSize client, ViewSize image, int steps)
{
    CanvasView view = resizedView({}, client, image);
    for (; steps > 0; --steps)
        view = steppedAboutCentre(view, 1);
    return view;
}

struct MapPixels {
    std::vector<uint8_t> bytes;
    BitsView view;
};

static MapPixels pixelsOf(int width, int height)
{
    const ptrdiff_t stride = (ptrdiff_t)rowStride(width, 24);
    MapPixels pixels = {std::vector<uint8_t>((size_t)(stride * height)), {}};
    pixels.view = {pixels.bytes.data(), stride, width, height};
    return pixels;
}

TEST(MapLayout, AtMostAQuarterEachWayInTheLowerRightOrLeftCorner)
{
    Dice dice = {41};
    for (int round = 0; round < 2000; ++round) {
        const ViewSize client = {dice.between(1, 1600), dice.between(1, 1200)};
        const CanvasView view = zoomed(client, {dice.between(1, 8000), dice.between(1, 8000)}, 3);
        const PixelRect right = mapRect(view, false), left = mapRect(view, true);
        if (right.left == right.right) continue;
        ASSERT_LE(4 * (right.right - right.left), client.width);
        ASSERT_LE(4 * (right.bottom - right.top), client.height);
        ASSERT_GE(right.left, client.width / 2);
        ASSERT_LE(right.right, client.width);
        ASSERT_GE(right.top, client.height / 2);
        ASSERT_LE(right.bottom, client.height);
        ASSERT_GE(left.left, 0);
        ASSERT_LE(left.right, client.width / 2);
        ASSERT_EQ(right.top, left.top);
        ASSERT_EQ(right.right - right.left, left.right - left.left);
        ASSERT_FALSE(mapGivesWay(view, {left.left, left.top}) && left.right + 30 < right.left);
        ASSERT_TRUE(mapGivesWay(view, {right.left, right.top}));
        ASSERT_TRUE(mapGivesWay(view, {right.right - 1, right.bottom - 1}));
    }
}

TEST(MapLayout, KeepsTheImagesProportions)
{
    const PixelRect map = mapInside(mapRect(zoomed({1000, 800}, {4000, 1000}, 2), false));
    EXPECT_EQ(248, map.right - map.left);
    EXPECT_EQ(62, map.bottom - map.top);
    const PixelRect high = mapInside(mapRect(zoomed({1000, 800}, {1000, 4000}, 2), false));
    EXPECT_EQ(198, high.bottom - high.top);
    EXPECT_EQ(49, high.right - high.left);
}

TEST(MapLayout, NoRoomNoMap)
{
    const PixelRect map = mapRect(zoomed({39, 300}, {4000, 3000}, 4), false);
    EXPECT_EQ(map.left, map.right);
    EXPECT_FALSE(mapGivesWay(zoomed({39, 300}, {4000, 3000}, 4), {5, 290}));
}

TEST(MapLayout, TheFrameIsWhereTheViewIs)
{
    const CanvasView view = zoomed({1000, 750}, {4000, 3000}, 4);  // 100 %: a quarter of each side
    const PixelRect map = mapInside(mapRect(view, false));
    const int width = map.right - map.left;
    PixelRect frame = mapFrame(view, map);
    EXPECT_NEAR(width * 3 / 8, frame.left - map.left, 1);
    EXPECT_NEAR(width / 4, frame.right - frame.left, 1);
    frame = mapFrame(pannedView(view, -9999, -9999), map);
    EXPECT_EQ(map.left, frame.left);
    EXPECT_EQ(map.top, frame.top);
    frame = mapFrame(pannedView(view, 9999, 9999), map);
    EXPECT_EQ(map.right, frame.right);
    EXPECT_EQ(map.bottom, frame.bottom);
    frame = mapFrame(zoomed({100, 75}, {60000, 40}, 14), {0, 0, 20, 10});
    EXPECT_LT(frame.left, frame.right);
    EXPECT_LT(frame.top, frame.bottom);
}

TEST(MapLayout, APartMadeAnewIsAsIfAllWereMadeAnew)
{
    Dice dice = {42};
    for (int round = 0; round < 300; ++round) {
        MapPixels image = pixelsOf(dice.between(1, 300), dice.between(1, 200));
        MapPixels map = pixelsOf(dice.between(1, 60), dice.between(1, 60)),
                  whole = pixelsOf(map.view.width, map.view.height);
        for (uint8_t& byte : image.bytes)
            byte = (uint8_t)dice.next();
        const PixelRect all = {0, 0, image.view.width, image.view.height};
        renewThumbnail(map.view, image.view, all);
        const int left = dice.upTo(image.view.width - 1), top = dice.upTo(image.view.height - 1);
        const PixelRect part = {left, top, dice.between(left + 1, image.view.width),
                                dice.between(top + 1, image.view.height)};
        for (int y = part.top; y < part.bottom; ++y)
            memset(rowOf(image.view, y) + 3 * part.left, round, (size_t)(3 * (part.right - part.left)));
        renewThumbnail(map.view, image.view, part);
        renewThumbnail(whole.view, image.view, all);
        ASSERT_TRUE(whole.bytes == map.bytes) << round;
    }
}

TEST(MapLayout, AThumbnailPixelIsTheMeanOfWhatItShows)
{
    MapPixels image = pixelsOf(6, 3), map = pixelsOf(2, 1);
    for (int i = 0; i < 9; ++i)
        rowOf(image.view, i / 3)[3 * (i % 3)] = (uint8_t)(i * 10);  // blue of the left half: 0..80
    renewThumbnail(map.view, image.view, {0, 0, 6, 3});
    EXPECT_EQ(40, map.bytes[0]);
    EXPECT_EQ(0, map.bytes[3]);
}
