#include <gtest/gtest.h>

#include "tests/unit/pure/guarded_image.h"
#include "tools/kernels/mix_rows.h"

static std::vector<uint8_t> randomBytes(Dice& dice, size_t count)
{
    std::vector<uint8_t> bytes(count);
    for (uint8_t& byte : bytes)
        byte = (uint8_t)dice.upTo(255);
    return bytes;
}

static uint8_t mixed(int under, int over, int opacity)
{
    return (uint8_t)((under * (100 - opacity) + over * opacity) / 100);
}

TEST(MixRows, EveryPairOfBytesAndOpacity)
{
    std::vector<uint8_t> over(256), pixels(256);
    for (int k = 0; k < 256; ++k)
        over[k] = (uint8_t)k;
    for (int opacity = 0; opacity <= 100; ++opacity)
        for (int under = 0; under < 256; ++under) {
            std::fill(pixels.begin(), pixels.end(), (uint8_t)under);
            mixBytesOver(pixels.data(), over.data(), 256, opacity);
            for (int k = 0; k < 256; ++k)
                ASSERT_EQ(mixed(under, k, opacity), pixels[k]) << under << " under " << k << ", opacity " << opacity;
        }
}

// Every byte is mixed once, however the row is cut into vectors, and none beside it.
TEST(MixRows, EveryLengthIsMixedOnceAndStaysInside)
{
    for (int count = 0; count <= 100; ++count)
        for (int opacity : {0, 1, 49, 99, 100}) {
            Dice dice = {(uint64_t)(count * 101 + opacity) + 1};
            const std::vector<uint8_t> over = randomBytes(dice, (size_t)count);
            std::vector<uint8_t> pixels = randomBytes(dice, (size_t)count + 2 * GUARD), expected = pixels;
            for (int k = 0; k < count; ++k)
                expected[GUARD + k] = mixed(expected[GUARD + k], over[k], opacity);
            mixBytesOver(pixels.data() + GUARD, over.data(), (size_t)count, opacity);
            ASSERT_EQ(expected, pixels) << count << " bytes, opacity " << opacity;
        }
}

TEST(MixRows, AColourIsLaidOverEveryNumberOfPixels)
{
    for (int count = 0; count <= 70; ++count)
        for (int opacity : {0, 1, 50, 100}) {
            Dice dice = {(uint64_t)(count * 101 + opacity) + 1};
            const Rgb colour = {(uint8_t)dice.upTo(255), (uint8_t)dice.upTo(255), (uint8_t)dice.upTo(255)};
            const uint8_t over[] = {colour.blue, colour.green, colour.red};
            std::vector<uint8_t> pixels = randomBytes(dice, (size_t)count * 3 + 2 * GUARD), expected = pixels;
            for (int k = 0; k < count * 3; ++k)
                expected[GUARD + k] = mixed(expected[GUARD + k], over[k % 3], opacity);
            mixColourOver(pixels.data() + GUARD, colourRow(colour), count, opacity);
            ASSERT_EQ(expected, pixels) << count << " pixels, opacity " << opacity;
        }
}
