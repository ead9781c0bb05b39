// Single colours: the tone table, hue and lightness, both callers' constants, every method against the
// reference. The Windows builds walk all 16,777,216 colours; the sanitizer build takes samples.
#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <random>

#include "color/kernels/adjust.h"
#include "color/kernels/hls.h"
#include "color/kernels/lift.h"
#include "color/kernels/tone_table.h"
#include "tests/reference/colour_reference.h"
#include "tests/unit/pure/given_values.h"
#include "tests/unit/vector_levels.h"

using reference::Colour;
using reference::Values;

#ifdef __SANITIZE_ADDRESS__
constexpr int RED_STEP = 51;
constexpr int SAMPLE_SHARE = 20;
#else
constexpr int RED_STEP = 1;
constexpr int SAMPLE_SHARE = 1;
#endif

static Colour adjusted(const ColourAdjustment& adjustment, Colour in)
{
    uint8_t pixel[3] = {(uint8_t)in.blue, (uint8_t)in.green, (uint8_t)in.red};
    adjustPixels(adjustment, pixel, pixel, 1);
    return Colour{pixel[2], pixel[1], pixel[0]};
}

static void expectColour(int red, int green, int blue, Colour actual)
{
    EXPECT_EQ(red, actual.red);
    EXPECT_EQ(green, actual.green);
    EXPECT_EQ(blue, actual.blue);
}

TEST(ToneTable, IsTheIdentityAtTheMiddle)
{
    uint8_t table[256];
    EXPECT_EQ(1, buildToneTable(table, 127, 127));
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(i, table[i]);
    }
}

TEST(ToneTable, EqualsTheReferenceForEveryContrastAndBrightness)
{
    uint8_t table[256];
    for (int a = 0; a <= 256; ++a) {
        for (int b = 0; b <= 256; ++b) {
            buildToneTable(table, a, b);
            for (int i = 0; i < 256; ++i) {
                ASSERT_EQ(reference::toneValue(i, a, b), table[i]) << "a " << a << " b " << b << " input " << i;
            }
        }
    }
}

TEST(ImageAdjustment, NeutralValuesRaiseEveryLevelFrom191ByOne)
{
    const ColourAdjustment neutral = imageAdjustment({0, 0, 50, 0, 0});
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(i < 191 || i == 255 ? i : i + 1, neutral.tone[i]);
    }
    expectColour(192, 255, 190, adjusted(neutral, Colour{191, 254, 190}));
}

TEST(SelectionAdjustment, NeutralValuesChangeNothing)
{
    const ColourAdjustment neutral = selectionAdjustment({0, 0, 50, 0, 0});
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(i, neutral.tone[i]);
    }
    expectColour(191, 254, 3, adjusted(neutral, Colour{191, 254, 3}));
}

TEST(SelectionAdjustment, LosesALittleSaturationWheneverTheHueIsShifted)
{
    EXPECT_EQ(127, selectionAdjustment({0, 0, 50, 1, 0}).saturationFactor);
    EXPECT_EQ(128, imageAdjustment({0, 0, 50, 1, 0}).saturationFactor);
}

TEST(Hls, GrayHasHue168AndComesBackTruncated)
{
    for (int level = 0; level < 256; ++level) {
        uint16_t hue, lightness, saturation;
        rgbToHls((uint16_t)level, (uint16_t)level, (uint16_t)level, &hue, &lightness, &saturation);
        EXPECT_EQ(168, hue);
        EXPECT_EQ(0, saturation);
        const int back = lightness * 255 / 252;
        // Through the whole path, at a hue shift that would show on a colour.
        uint8_t toned = imageAdjustment({0, 0, 50, 9, 0}).tone[level];
        rgbToHls(toned, toned, toned, &hue, &lightness, &saturation);
        const int adjustedBack = lightness * 255 / 252;
        expectColour(adjustedBack, adjustedBack, adjustedBack,
                     adjusted(imageAdjustment({0, 0, 50, 9, 0}), Colour{level, level, level}));
        uint8_t red, green, blue;
        rgbToHls((uint16_t)level, (uint16_t)level, (uint16_t)level, &hue, &lightness, &saturation);
        hlsToRgb(hue, lightness, saturation, &red, &green, &blue);
        expectColour(back, back, back, Colour{red, green, blue});
    }
}

// The hue of a pure colour shifted on the path, read back from the result.
static int shiftedHue(int hue, int shift)
{
    const Colour pure = reference::rgbFromHls({hue, 126, 252});
    EXPECT_EQ(hue, reference::hlsFromRgb(pure).hue) << "this hue does not survive";
    return reference::hlsFromRgb(adjusted(imageAdjustment({0, 0, 50, shift, 0}), pure)).hue;
}

TEST(HueShift, WrapsOnceAtBothEnds)
{
    EXPECT_EQ(125, shiftedHue(0, -127));
    EXPECT_EQ(75, shiftedHue(200, 127));
}

TEST(Saturation, HundredMakesEveryPixelGray)
{
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const Colour in = {(int)(random() & 255), (int)(random() & 255), (int)(random() & 255)};
        const Colour out = adjusted(imageAdjustment({0, 0, 100, (int)(random() % 255) - 127, 0}), in);
        ASSERT_EQ(out.red, out.green);
        ASSERT_EQ(out.red, out.blue);
    }
}

TEST(Saturation, ZeroDoublesAndClampsAt252)
{
    EXPECT_EQ(256, imageAdjustment({0, 0, 0, 0, 0}).saturationFactor);
    // Levels below 191, which the tone table leaves alone.
    const Colour pale = {110, 100, 90};
    const reference::Hls before = reference::hlsFromRgb(pale);
    expectColour(reference::rgbFromHls({before.hue, before.lightness, 2 * before.saturation}).red,
                 reference::rgbFromHls({before.hue, before.lightness, 2 * before.saturation}).green,
                 reference::rgbFromHls({before.hue, before.lightness, 2 * before.saturation}).blue,
                 adjusted(imageAdjustment({0, 0, 0, 0, 0}), pale));
    const Colour strong = {180, 40, 20};
    const reference::Hls hls = reference::hlsFromRgb(strong);
    ASSERT_GT(2 * hls.saturation, 252);
    const Colour clamped = reference::rgbFromHls({hls.hue, hls.lightness, 252});
    expectColour(clamped.red, clamped.green, clamped.blue, adjusted(imageAdjustment({0, 0, 0, 0, 0}), strong));
}

static Colour lifted(Colour in, int times)
{
    uint8_t pixel[3] = {(uint8_t)in.blue, (uint8_t)in.green, (uint8_t)in.red};
    liftPixels(pixel, 1, times);
    return Colour{pixel[2], pixel[1], pixel[0]};
}

TEST(Lift, LeavesBlackAloneAndDrivesWhiteToWhite)
{
    expectColour(0, 0, 0, lifted(Colour{0, 0, 0}, 1));
    expectColour(0, 0, 0, lifted(Colour{0, 0, 0}, 1000));
    expectColour(255, 255, 255, lifted(Colour{255, 255, 255}, 1));
    expectColour(255, 255, 255, lifted(Colour{255, 255, 255}, 1000));
}

TEST(Lift, NeverChangesRedAndDoesNothingBelowOnePass)
{
    EXPECT_EQ(200, lifted(Colour{200, 180, 20}, 5).red);
    expectColour(200, 180, 20, lifted(Colour{200, 180, 20}, 0));
    expectColour(200, 180, 20, lifted(Colour{200, 180, 20}, -1));
}

TEST(Lift, KeepsTheFirstGrayOverAllPasses)
{
    std::mt19937 random(2);
    for (int i = 0; i < 300000 / SAMPLE_SHARE; ++i) {
        const uint32_t v = random();
        const Colour in = {(int)(v & 255), (int)((v >> 8) & 255), (int)((v >> 16) & 255)};
        const int passes = (int)(v >> 24) % 12;
        const Colour expected = reference::adjustedForSelection(in, Values{0, 0, 50, 0, passes});
        const Colour actual = lifted(in, passes);
        ASSERT_TRUE(expected.red == actual.red && expected.green == actual.green && expected.blue == actual.blue)
            << in.red << "," << in.green << "," << in.blue << " lifted " << passes << " times";
    }
}

TEST(Hls, EqualsTheReferenceForEveryColour)
{
    for (int red = 0; red < 256; red += RED_STEP) {
        for (int green = 0; green < 256; ++green) {
            for (int blue = 0; blue < 256; ++blue) {
                const reference::Hls expected = reference::hlsFromRgb(Colour{red, green, blue});
                uint16_t hue, lightness, saturation;
                rgbToHls((uint16_t)red, (uint16_t)green, (uint16_t)blue, &hue, &lightness, &saturation);
                ASSERT_TRUE(expected.hue == hue && expected.lightness == lightness && expected.saturation == saturation)
                    << red << "," << green << "," << blue;
                const Colour back = reference::rgbFromHls(expected);
                uint8_t r, g, b;
                hlsToRgb(hue, lightness, saturation, &r, &g, &b);
                ASSERT_TRUE(back.red == r && back.green == g && back.blue == b) << red << "," << green << "," << blue;
            }
        }
    }
}

TEST(Hls, EveryTripleComesBackAsTheReferenceSays)
{
    for (int hue = 0; hue <= 252; hue += RED_STEP > 1 ? 21 : 1) {
        for (int lightness = 0; lightness <= 252; ++lightness) {
            for (int saturation = 0; saturation <= 252; ++saturation) {
                const Colour expected = reference::rgbFromHls({hue, lightness, saturation});
                uint8_t r, g, b;
                hlsToRgb((uint16_t)hue, (uint16_t)lightness, (uint16_t)saturation, &r, &g, &b);
                ASSERT_TRUE(expected.red == r && expected.green == g && expected.blue == b)
                    << hue << "," << lightness << "," << saturation;
            }
        }
    }
}

// All colours of one red level, through every method.
struct RedLevel {
    std::vector<uint8_t> input, expected, actual;

    RedLevel() : input(65536 * 3), expected(65536 * 3), actual(65536 * 3) {}
};

static void fillRedLevel(RedLevel* level, int red)
{
    uint8_t* p = level->input.data();
    for (int i = 0; i < 65536; ++i, p += 3) {
        p[0] = (uint8_t)i;
        p[1] = (uint8_t)(i >> 8);
        p[2] = (uint8_t)red;
    }
}

static void expectAllMethods(RedLevel* level, const ColourAdjustment& adjustment, const char* what, int red)
{
    for (int m = 0; m < VECTOR_LEVEL_COUNT; ++m) {
        const LevelInUse inUse(m);
        if (!inUse.present) continue;
        adjustPixels(adjustment, level->input.data(), level->actual.data(), 65536);
        ASSERT_EQ(0, memcmp(level->expected.data(), level->actual.data(), level->actual.size()))
            << what << ", method " << vectorLevelName((VectorLevel)m) << ", red " << red;
    }
}

static const Values spread[] = {
    {0, 0, 50, 0, 0},    {-20, -10, 50, 0, 0},   {0, 0, 35, 20, 0},        {0, 0, 50, 1, 0},      {0, 0, 0, 0, 0},
    {0, 0, 100, -60, 0}, {-100, 100, 3, 127, 0}, {100, -100, 50, -127, 0}, {37, -42, 77, -64, 0}, {-63, 15, 51, 126, 0},
};

// The first red level and the step between them. Two sets of values meet every colour, the others every fourth red
// level, not the same ones, so that they meet every colour together.
struct RedLevels {
    int first, step;
};

static RedLevels redLevels(int set)
{
    const bool all = set == 1 || set == 2;
    return all ? RedLevels{0, RED_STEP} : RedLevels{set % 4, 4 * RED_STEP};
}

static void walkColours(int set, bool wholeImage)
{
    const Values& values = spread[set];
    const RedLevels levels = redLevels(set);
    const ColourAdjustment adjustment =
        wholeImage ? imageAdjustment(given(values)) : selectionAdjustment(given(values));
    RedLevel level;
    for (int red = levels.first; red < 256; red += levels.step) {
        fillRedLevel(&level, red);
        uint8_t* p = level.expected.data();
        for (int i = 0; i < 65536; ++i, p += 3) {
            const Colour in = {red, i >> 8, i & 255};
            const Colour out =
                wholeImage ? reference::adjustedForImage(in, values) : reference::adjustedForSelection(in, values);
            p[0] = (uint8_t)out.blue;
            p[1] = (uint8_t)out.green;
            p[2] = (uint8_t)out.red;
        }
        ASSERT_NO_FATAL_FAILURE(expectAllMethods(&level, adjustment, wholeImage ? "image" : "selection", red));
    }
}

class EveryColour : public testing::TestWithParam<int> {};  // of a set of values

TEST_P(EveryColour, OfAnImageEqualsTheReference)
{
    walkColours(GetParam(), true);
}

TEST_P(EveryColour, OfASelectionEqualsTheReference)
{
    walkColours(GetParam(), false);
}

INSTANTIATE_TEST_SUITE_P(Spread, EveryColour, testing::Range(0, (int)std::size(spread)));

// Every saturation with every hue, and with them a walk through contrasts and brightnesses, on random
// colours; the odd count makes the last vector a partial one.
TEST(ColourMethods, AgreeForEverySaturationAndHue)
{
    const size_t pixelCount = 203;
    std::mt19937 random(3);
    std::vector<uint8_t> input(pixelCount * 3), expected(pixelCount * 3), actual(pixelCount * 3);
    int step = 0;
    for (int saturation = 0; saturation <= 100; ++saturation) {
        for (int hue = -127; hue <= 127; hue += SAMPLE_SHARE) {
            const int contrast = step * 7 % 201 - 100, brightness = step * 13 % 201 - 100;
            ++step;
            for (uint8_t& byte : input) {
                byte = (uint8_t)random();
            }
            for (size_t i = 0; i < pixelCount; ++i) {
                const Colour out = reference::adjustedForImage(Colour{input[i * 3 + 2], input[i * 3 + 1], input[i * 3]},
                                                               Values{contrast, brightness, saturation, hue, 0});
                expected[i * 3] = (uint8_t)out.blue;
                expected[i * 3 + 1] = (uint8_t)out.green;
                expected[i * 3 + 2] = (uint8_t)out.red;
            }
            const ColourAdjustment adjustment = imageAdjustment({contrast, brightness, saturation, hue, 0});
            for (int m = 0; m < VECTOR_LEVEL_COUNT; ++m) {
                const LevelInUse level(m);
                if (!level.present) continue;
                adjustPixels(adjustment, input.data(), actual.data(), pixelCount);
                ASSERT_EQ(expected, actual)
                    << vectorLevelName((VectorLevel)m) << " saturation " << saturation << " hue " << hue;
            }
        }
    }
}

TEST(ColourMethods, AgreeOnTheToneLineForEveryContrastAndBrightness)
{
    uint8_t input[256 + 8], actual[256 + 8];
    for (int i = 0; i < (int)sizeof input; ++i) {
        input[i] = (uint8_t)i;
    }
    for (int contrast = -100; contrast <= 100; ++contrast) {
        for (int brightness = -100; brightness <= 100; brightness += RED_STEP > 1 ? 8 : 1) {
            for (const ColourAdjustment& adjustment : {imageAdjustment({contrast, brightness, 50, 0, 0}),
                                                       selectionAdjustment({contrast, brightness, 50, 0, 0})}) {
                for (int m = 0; m < VECTOR_LEVEL_COUNT; ++m) {
                    const LevelInUse level(m);
                    if (!level.present) continue;
                    adjustPixels(adjustment, input, actual, sizeof input / 3);
                    for (size_t i = 0; i < sizeof input; ++i) {
                        ASSERT_EQ(adjustment.tone[input[i]], actual[i])
                            << vectorLevelName((VectorLevel)m) << " contrast " << contrast << " brightness "
                            << brightness;
                    }
                }
            }
        }
    }
}

TEST(ColourMethods, TouchNothingBeyondTheirPixels)
{
    const ColourAdjustment tone = imageAdjustment({-20, -10, 50, 0, 0}), hls = imageAdjustment({0, 0, 35, 20, 0});
    for (int m = 0; m < VECTOR_LEVEL_COUNT; ++m) {
        const LevelInUse level(m);
        if (!level.present) continue;
        for (size_t count = 0; count < 70; ++count) {
            for (const ColourAdjustment* adjustment : {&tone, &hls}) {
                const size_t bytes = count * 3;
                std::vector<uint8_t> input(bytes, 90);  // read one byte too far and a sanitizer tells
                std::vector<uint8_t> output(bytes + 64, 0xCC);
                adjustPixels(*adjustment, input.data(), output.data(), count);
                for (size_t i = bytes; i < output.size(); ++i) {
                    ASSERT_EQ(0xCC, output[i]) << vectorLevelName((VectorLevel)m) << " " << count;
                }
                adjustPixels(*adjustment, input.data(), input.data(), count);
                ASSERT_TRUE(std::equal(input.begin(), input.end(), output.begin()))
                    << vectorLevelName((VectorLevel)m) << " in place, " << count;
            }
        }
    }
}

TEST(ColourMethods, LeaveValuesOutOfRangeToThePlainWay)
{
    const ColourAdjustment wild = imageAdjustment({-5000, 4000, 50, 0, 0});
    uint8_t input[256], actual[256];
    for (int i = 0; i < 256; ++i) {
        input[i] = (uint8_t)i;
    }
    for (int m = 0; m < VECTOR_LEVEL_COUNT; ++m) {
        const LevelInUse level(m);
        if (!level.present) continue;
        adjustPixels(wild, input, actual, 85);
        for (int i = 0; i < 255; ++i) {
            ASSERT_EQ(wild.tone[i], actual[i]);
        }
    }
}
