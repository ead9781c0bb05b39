#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "text/kernels/text_stamp.h"

struct StampPicture {
    int width, height, stride;
    std::vector<uint8_t> bytes;
    StampPicture(int w, int h) : width(w), height(h), stride((w * 3 + 3) / 4 * 4), bytes((size_t)stride * h, 0xCC) {}
    uint8_t* at(int x, int y) { return &bytes[(size_t)stride * (height - 1 - y) + 3 * x]; }
    BitsView view() { return {at(0, 0), -stride, width, height}; }
};

static StampPicture randomPicture(int width, int height, unsigned seed)
{
    StampPicture picture(width, height);
    std::mt19937 random(seed);
    for (uint8_t& byte : picture.bytes)
        byte = (uint8_t)random();
    return picture;
}

static StampPicture randomStrip(int width, int height, unsigned seed)
{
    StampPicture strip(width, height);
    std::mt19937 random(seed);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const uint8_t value = random() % 3 == 0 ? 255 : 0;
            for (int c = 0; c < 3; ++c)
                strip.at(x, y)[c] = value;
        }
    }
    return strip;
}

static StampPicture expected(StampPicture image, StampPicture strip, int originY, Rgb colour, int opacity)
{
    const uint8_t channels[] = {colour.blue, colour.green, colour.red};
    const int rows = std::min(strip.height, image.height - 1 - originY);
    for (int row = 0; row < rows; ++row) {
        if (originY + row < 0) continue;
        for (int x = 0; x < image.width; ++x) {
            if (!strip.at(x, row)[2]) continue;
            uint8_t* pixel = image.at(x, originY + row);
            for (int c = 0; c < 3; ++c) {
                pixel[c] = (uint8_t)((pixel[c] * (100 - opacity) + channels[c] * opacity) / 100);
            }
        }
    }
    return image;
}

TEST(TextStamp, EqualsTheRulesAtEveryBorder)
{
    for (unsigned seed = 1; seed <= 400; ++seed) {
        std::mt19937 random(seed);
        const int width = 1 + (int)(random() % 9), height = 1 + (int)(random() % 12);
        const int lineHeight = 1 + (int)(random() % 8);
        const int originY = (int)(random() % 30) - 15;
        const int opacity = random() % 2 ? 100 : (int)(random() % 101);
        const Rgb colour = {(uint8_t)random(), (uint8_t)random(), (uint8_t)random()};
        StampPicture image = randomPicture(width, height, seed);
        StampPicture strip = randomStrip(width, lineHeight, seed + 1000);
        const StampPicture wanted = expected(image, strip, originY, colour, opacity);
        stampText(image.view(), strip.view(), originY, colour, opacity);
        ASSERT_EQ(wanted.bytes, image.bytes) << "seed " << seed;
    }
}

TEST(TextStamp, LastImageRowIsNeverReached)
{
    StampPicture image = randomPicture(4, 6, 1);
    const StampPicture before = image;
    StampPicture strip(4, 6);
    for (uint8_t& byte : strip.bytes)
        byte = 255;
    stampText(image.view(), strip.view(), 0, {1, 2, 3}, 100);
    for (int x = 0; x < 12; ++x)
        EXPECT_EQ(before.bytes[x], image.bytes[x]);  // the bottom row is stored first
    EXPECT_NE(before.bytes[(size_t)image.stride], image.bytes[(size_t)image.stride]);
}
