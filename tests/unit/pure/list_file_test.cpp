#include <gtest/gtest.h>

#include "library/format/list_file.h"

TEST(ListFile, CounterEndsAtTheFirstCharacterThatIsNoDigit)
{
    EXPECT_EQ(parseCounter("000", 3), 0);
    EXPECT_EQ(parseCounter("042", 3), 42);
    EXPECT_EQ(parseCounter("999", 3), 999);
    EXPECT_EQ(parseCounter("7\r\n", 3), 7);
    EXPECT_EQ(parseCounter("12x", 3), 12);
    EXPECT_EQ(parseCounter("x12", 3), 0);
    EXPECT_EQ(parseCounter("-12", 3), 0);
    EXPECT_EQ(parseCounter(" 12", 3), 0);
}

TEST(ListFile, FewerThanThreeCharactersEndTheCounter)
{
    EXPECT_EQ(parseCounter("", 0), 0);
    EXPECT_EQ(parseCounter("5", 1), 5);
    EXPECT_EQ(parseCounter("57999", 2), 57);
    EXPECT_EQ(parseCounter("12345", 5), 123) << "never more than three";
}

TEST(ListFile, After999TheStoredCounterIs100)
{
    char text[LIST_TEXT_SIZE];
    formatCounter(text, 999);
    EXPECT_STREQ(text, "999");
    formatSelectionName(text, 1000);
    EXPECT_STREQ(text, "seld_1000.tif");
    formatCounter(text, 1000);
    EXPECT_STREQ(text, "100");
    EXPECT_EQ(parseCounter(text, 3) + 1, 101) << "the save after file 1000 writes file 101 again";
}

TEST(ListFile, LinesNameTheFileAndEndWithCrLf)
{
    char text[LIST_TEXT_SIZE];
    formatListLine(text, 1);
    EXPECT_STREQ(text, "seld_001.tif\r\n");
    formatListLine(text, 1000);
    EXPECT_STREQ(text, "seld_1000.tif\r\n");
    formatSelectionName(text, 12);
    EXPECT_STREQ(text, "seld_012.tif");
}
