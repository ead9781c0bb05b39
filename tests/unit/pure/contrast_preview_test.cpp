#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "color/kernels/contrast_preview.h"

// A bottom-up image in plain bytes: pixel (x, stored row) starts at stride * row + 3 * x.
struct Stored {
    int width, height;
    int stride;
    std::vector<uint8_t> bytes;
};

static Stored blank(int width, int height)
{
    const int stride = (width * 3 + 3) / 4 * 4;
    return {width, height, stride, std::vector<uint8_t>((size_t)stride * height, 0xCC)};
}

static Stored randomImage(int width, int height, unsigned seed)
{
    Stored image = blank(width, height);
    std::mt19937 random(seed);
    for (uint8_t& byte : image.bytes)
        byte = (uint8_t)random();
    return image;
}

static BitsView viewOf(Stored& image)
{
    return {image.bytes.data() + (size_t)image.stride * (image.height - 1), -image.stride, image.width, image.height};
}

static Stored expectedPreview(const Stored& image, int width, int height)
{
    Stored preview = blank(width, height);
    for (int row = 0; row < height; ++row) {
        int from = row == 0 ? 0 : (row - 1) * image.height / height;
        if (from > image.height - 1) from = image.height - 1;
        for (int x = 0; x < width; ++x) {
            int column = x * image.width / width;
            if (column > image.width - 1) column = image.width - 1;
            for (int channel = 0; channel < 3; ++channel) {
                preview.bytes[(size_t)preview.stride * row + 3 * x + channel] =
                    image.bytes[(size_t)image.stride * from + 3 * column + channel];
            }
        }
    }
    return preview;
}

TEST(ContrastPreview, IsAsTallAsTheClientArea)
{
    const PreviewSize wide = previewSizeFor(400, 100, 1000, 115);
    EXPECT_EQ(460, wide.width);
    EXPECT_EQ(115, wide.height);
    const PreviewSize tall = previewSizeFor(100, 400, 1000, 115);
    EXPECT_EQ(28, tall.width);
    EXPECT_EQ(115, tall.height);
}

TEST(ContrastPreview, IsReducedWhenTooWide)
{
    const PreviewSize size = previewSizeFor(400, 100, 300, 115);
    EXPECT_EQ(300, size.width);
    EXPECT_EQ(75, size.height);
}

TEST(ContrastPreview, ExtremeProportionsLeaveNoRoom)
{
    EXPECT_EQ(0, previewSizeFor(1, 1000000, 300, 115).width);
    EXPECT_EQ(0, previewSizeFor(1000000, 1, 300, 115).height);
    EXPECT_EQ(300, previewSizeFor(2000000000, 2, 300, 115).width);  // products beyond 32 bits
}

TEST(ContrastPreview, StoredRowsLagByOne)
{
    Stored image = randomImage(4, 8, 1);
    Stored preview = blank(4, 8);
    samplePreview(viewOf(preview), viewOf(image));
    for (int row = 0; row < 8; ++row) {
        const int from = row == 0 ? 0 : row - 1;
        EXPECT_TRUE(std::equal(preview.bytes.begin() + row * 12, preview.bytes.begin() + row * 12 + 12,
                               image.bytes.begin() + from * 12))
            << row;
    }
}

TEST(ContrastPreview, EqualsTheRulesAndKeepsPadding)
{
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 random(seed);
        Stored image = randomImage(1 + (int)(random() % 40), 1 + (int)(random() % 40), seed);
        Stored preview = blank(1 + (int)(random() % 50), 1 + (int)(random() % 50));
        samplePreview(viewOf(preview), viewOf(image));
        ASSERT_EQ(expectedPreview(image, preview.width, preview.height).bytes, preview.bytes) << "seed " << seed;
    }
}
