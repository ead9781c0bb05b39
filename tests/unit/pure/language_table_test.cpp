#include <gtest/gtest.h>

#include <cstring>

#include "session/ground/language_table.h"

TEST(LanguageTable, EveryCodeHasItsOffset)
{
    const struct {
        const char* code;
        int offset;
    } expected[] = {
        {"FRA", 0},     {"ENU", 1000},  {"ESN", 2000},  {"PTB", 3000},  {"ITA", 4000},  {"RUS", 5000},
        {"UKR", 5000},  {"PLK", 6000},  {"NLD", 7000},  {"CHS", 8000},  {"DEU", 9000},  {"SKY", 10000},
        {"HUN", 11000}, {"JPN", 12000}, {"CSY", 13000}, {"TRK", 14000}, {"LTH", 15000}, {"KOR", 16000},
    };
    for (const auto& row : expected)
        EXPECT_EQ(row.offset, languageOffsetOf(row.code)) << row.code;
}

TEST(LanguageTable, UnknownOrShortCodesAreEnglish)
{
    EXPECT_EQ(1000, languageOffsetOf("ZZZ"));
    EXPECT_EQ(1000, languageOffsetOf(""));
    EXPECT_EQ(1000, languageOffsetOf("F"));
}

TEST(LanguageTable, DialogNameTakesTheCode)
{
    wchar_t name[16] = L"ENDLGRTCH_CMD";
    localiseDialogName(name, "DEU");
    EXPECT_STREQ(L"DEDLGRTCH_CMD", name);
    localiseDialogName(name, "UKR");
    EXPECT_STREQ(L"RUDLGRTCH_CMD", name);
    localiseDialogName(name, "");
    EXPECT_STREQ(L"RUDLGRTCH_CMD", name);
}
