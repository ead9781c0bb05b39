#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "tools/settings/settings_text.h"

static ToolSettings brushSettings()
{
    return {TOOL_BRUSH, 0, 0, 1, 16, 16, 0, 1, 1, 1, 0xC0C0FF, 100};
}

TEST(SettingsText, WritesNumbersAtFixedPositions)
{
    char text[SETTINGS_VALUE_SIZE];
    formatToolValue(text, sizeof text, brushSettings());
    EXPECT_STREQ("000,000,016,016,001,001,001,001,000,100,12632319", text);
}

TEST(SettingsText, NegativeNumbersTakeASignAndThreeDigits)
{
    ToolSettings settings = brushSettings();
    settings.spare = (uint32_t)-7;
    char text[SETTINGS_VALUE_SIZE];
    formatToolValue(text, sizeof text, settings);
    EXPECT_STREQ("000,000,016,016,001,001,001,001,-007,100,12632319", text);
}

TEST(SettingsText, EveryFieldComesBack)
{
    const ToolSettings written = {TOOL_STAMP, 1, 1, 0, 23, 47, 5, 0, 0, 1, 0x123456, 49};
    char text[SETTINGS_VALUE_SIZE];
    formatToolValue(text, sizeof text, written);
    ToolSettings read = {};
    read.toolId = TOOL_STAMP;
    parseToolValue(text, read);
    EXPECT_EQ(0, memcmp(&written, &read, sizeof read));
}

TEST(SettingsText, OlderLayoutHasNoEdge)
{
    ToolSettings read = {};
    read.edge = 77;
    parseLegacyToolValue("001,023,047,001,000,001,000,005,049,1193046", read);
    const ToolSettings expected = {0, 1, 77, 0, 23, 47, 5, 1, 0, 1, 1193046, 49};
    EXPECT_EQ(0, memcmp(&expected, &read, sizeof read));
}

TEST(SettingsText, ShortValuesAreReadAtFixedPositionsAllTheSame)
{
    ToolSettings read = brushSettings();
    parseToolValue("1,2,3", read);  // position 0 holds 1, position 4 holds 3, nothing behind
    EXPECT_EQ(1u, read.shape);
    EXPECT_EQ(3u, read.edge);
    EXPECT_EQ(0u, read.width);
    EXPECT_EQ(0u, read.colour);
}

TEST(SettingsText, NumbersBeyondTheRangeStopAtItsBounds)
{
    ToolSettings read = {};
    parseToolValue("99999999999999999999", read);
    EXPECT_EQ((uint32_t)INT_MAX, read.shape);
    parseToolValue("-99999999999999999999", read);
    EXPECT_EQ((uint32_t)INT_MIN, read.shape);
}

TEST(SettingsText, FontNinthNumberReplacesTheFourth)
{
    FontSettings font;
    parseFontValue("020,700,002,034,001,000,001,204,018,Courier New", font);
    EXPECT_EQ(20, font.height);
    EXPECT_EQ(700, font.weight);
    EXPECT_EQ(2, font.quality);
    EXPECT_EQ(18, font.pitchAndFamily);
    EXPECT_EQ(1, font.italic);
    EXPECT_EQ(0, font.underline);
    EXPECT_EQ(1, font.strikeOut);
    EXPECT_EQ(204, font.charSet);
    EXPECT_STREQ("Courier New", font.face);
}

TEST(SettingsText, LongFaceNameIsCut)
{
    const std::string value = "020,700,002,034,000,000,000,000,034," + std::string(10000, 'x');
    FontSettings font;
    parseFontValue(value.c_str(), font);
    EXPECT_EQ(std::string(FACE_NAME_SIZE - 1, 'x'), font.face);
}

TEST(SettingsText, FontRoundTrip)
{
    const FontSettings font = {-24, 400, 2, 34, 0, 1, 0, 238, "Arial"};
    char text[SETTINGS_VALUE_SIZE];
    formatFontValue(text, sizeof text, font);
    EXPECT_STREQ("-024,400,002,034,000,001,000,238,034,Arial", text);
}

TEST(SettingsText, FormattingNeverPassesTheBuffer)
{
    char text[16];
    memset(text, 0x55, sizeof text);
    formatToolValue(text, 8, brushSettings());
    EXPECT_EQ(0, text[7]);
    EXPECT_EQ(0x55, text[8]);
}
