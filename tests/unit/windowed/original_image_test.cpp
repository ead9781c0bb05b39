// The original of an image that is larger than the caches: it is copied past them, both ways.
#include "image/original_image.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/unit/windowed/session_fixture.h"

struct OriginalImage : SessionFixture {
    std::vector<uint8_t> bytesOfImage()
    {
        const uint8_t* const bytes = (const uint8_t*)GlobalLock(image);
        const std::vector<uint8_t> copy(bytes, bytes + GlobalSize(image));
        GlobalUnlock(image);
        return copy;
    }

    void fillImage(uint32_t factor)
    {
        uint8_t* const bytes = (uint8_t*)GlobalLock(image);
        for (size_t i = sizeof(BITMAPINFOHEADER); i < GlobalSize(image); ++i)
            bytes[i] = (uint8_t)(i * factor >> 24);
        GlobalUnlock(image);
    }
};

TEST_F(OriginalImage, OfAnySizeIsGivenBackWhole)
{
    ASSERT_TRUE(open(plainPicture(1901, 1501, {1, 2, 3})));
    releaseOriginal();
    fillImage(2654435761u);
    const std::vector<uint8_t> photo = bytesOfImage();
    ASSERT_GT(photo.size(), 8u * 1024 * 1024);
    ASSERT_TRUE(keepOriginal(image));
    EXPECT_EQ(photo, bytesOfImage());
    fillImage(40503u);
    ASSERT_NE(photo, bytesOfImage());
    giveBackOriginal();
    EXPECT_EQ(photo, bytesOfImage());
}
