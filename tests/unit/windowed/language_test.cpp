// The user's language as profile and locale tell it.
#include "session/ground/language.h"

#include <gtest/gtest.h>

#include <cstring>

#include "resources/resource_ids.h"
#include "session/ground/module_state.h"
#include "tests/session/import_patch.h"
#include "tests/unit/windowed/session_fixture.h"

static const char* profileAnswer;
static const char* localeAnswer;  // null: the system cannot tell

static DWORD WINAPI fakeProfile(LPCSTR section, LPCSTR key, LPCSTR standard, LPSTR buffer, DWORD size)
{
    EXPECT_STREQ("Intl", section);
    EXPECT_STREQ("sLanguage", key);
    EXPECT_STREQ("", standard);
    lstrcpynA(buffer, profileAnswer, (int)size);
    return (DWORD)lstrlenA(buffer);
}

static int WINAPI fakeLocale(LCID locale, LCTYPE type, LPSTR buffer, int size)
{
    EXPECT_EQ((LCID)LOCALE_USER_DEFAULT, locale);
    EXPECT_EQ((LCTYPE)LOCALE_SABBREVLANGNAME, type);
    if (!localeAnswer) return 0;
    lstrcpynA(buffer, localeAnswer, size);
    return lstrlenA(buffer) + 1;
}

struct UserLanguage : testing::Test {
    ImportPatch profile = {}, locale = {};
    char before[sizeof languageCode];

    void SetUp() override
    {
        memcpy(before, languageCode, sizeof before);
        ASSERT_TRUE(patchImport(&profile, GetModuleHandleA(nullptr), "GetProfileStringA", (void*)fakeProfile));
        ASSERT_TRUE(patchImport(&locale, GetModuleHandleA(nullptr), "GetLocaleInfoA", (void*)fakeLocale));
    }
    void TearDown() override
    {
        undoPatch(&locale);
        undoPatch(&profile);
        memcpy(languageCode, before, sizeof before);
    }
    void setCode(const char* code) { strncpy(languageCode, code, sizeof languageCode); }
};

// Two letters are left as they stand in the profile: which dialogs open depends on it.
TEST_F(UserLanguage, ProfileIsUpperCasedWhenItHasMoreThanTwoLetters)
{
    const char* const cases[][2] = {{"fra", "FRA"}, {"fr", "fr"}, {"f", "f"}, {"", ""}, {"french", "FRE"}};
    for (const auto& row : cases) {
        profileAnswer = row[0];
        readProfileLanguage();
        EXPECT_STREQ(row[1], languageCode);
    }
}

TEST_F(UserLanguage, LocaleIsUpperCasedAndItsFailureLeavesTheCode)
{
    localeAnswer = "deu";
    readLocaleLanguage();
    EXPECT_STREQ("DEU", languageCode);
    localeAnswer = nullptr;
    readLocaleLanguage();
    EXPECT_STREQ("DEU", languageCode);
}

TEST_F(UserLanguage, OffsetAsksTheLocaleOnlyWithoutACode)
{
    localeAnswer = "ITA";
    setCode("");
    EXPECT_EQ(4000, languageOffset());
    EXPECT_STREQ("ITA", languageCode);
    setCode("FRA");
    EXPECT_EQ(0, languageOffset());
    setCode("UKR");
    EXPECT_EQ(5000, languageOffset());
    setCode("SVE");
    EXPECT_EQ(1000, languageOffset());
    setCode("fr");
    EXPECT_EQ(1000, languageOffset());
}

TEST_F(UserLanguage, StringsComeFromTheLanguagesOffset)
{
    ModuleHome home;
    ASSERT_TRUE(moveModuleHome(&home));
    WCHAR text[128], other[128];
    setCode("SVE");
    EXPECT_GT(loadLocalString(moduleInstance, STRING_CONFIRM_DELETE, text, 128), 0);
    EXPECT_STREQ(L"Are you sure to delete the file ?", text);
    setCode("DEU");
    EXPECT_GT(loadLocalString(moduleInstance, STRING_CONFIRM_DELETE, other, 128), 0);
    EXPECT_STREQ(L"Möchten Sie die Datei wirklich löschen?", other);
    setCode("RUS");
    EXPECT_GT(loadLocalString(moduleInstance, STRING_CONFIRM_DELETE, other, 128), 0);
    EXPECT_EQ(L'ы', other[1]) << "whatever the system's code page is";
    EXPECT_EQ(0, loadLocalString(moduleInstance, STRING_CONFIRM_DELETE + 999, text, 128));
    EXPECT_STREQ(L"", text);
    leaveModuleHome(&home);
}
