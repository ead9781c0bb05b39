#include <gtest/gtest.h>

#include "session/dialogs/picture_table.h"

static const uint8_t twoEntries[] = {2, 0, 2, 0, 2, 0, 2, 0, 117, 0, 102, 0, 0, 0, 0, 0, 208, 0, 124, 0, 1, 2, 3, 0};

TEST(PictureTable, ReadsLittleEndianEntries)
{
    ASSERT_EQ(2u, pictureEntryCount(twoEntries, sizeof twoEntries));
    const PictureEntry brush = pictureEntry(twoEntries, 0);
    EXPECT_EQ(117, brush.controlId);
    EXPECT_EQ(102, brush.bitmapIds[0]);
    EXPECT_EQ(0, brush.bitmapIds[1]);
    const PictureEntry circle = pictureEntry(twoEntries, 1);
    EXPECT_EQ(208, circle.controlId);
    EXPECT_EQ(0x0201, circle.bitmapIds[1]);
    EXPECT_EQ(3, circle.bitmapIds[2]);
}

TEST(PictureTable, CountIsCutToWhatIsThere)
{
    EXPECT_EQ(1u, pictureEntryCount(twoEntries, sizeof twoEntries - 1));
    EXPECT_EQ(0u, pictureEntryCount(twoEntries, 8));
    EXPECT_EQ(0u, pictureEntryCount(twoEntries, 7));
    EXPECT_EQ(0u, pictureEntryCount(nullptr, 100));
}
