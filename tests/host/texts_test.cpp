// What retouch.exe says in each of its languages, as the finished program has it.
#include "host/text_ids.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>
#include <windows.h>

struct TextLanguage {
    const char* code;
    int offset;
    wchar_t first, last;  // letters that only some alphabets have; the hint must have one of them
};
static const TextLanguage languages[] = {
    {"FR", 0, L'é', L'é'},         {"EN", 1000, L'w', L'w'},      {"ES", 2000, L'í', L'í'},
    {"PT", 3000, L'A', L'z'},      {"IT", 4000, L'A', L'z'},      {"RU", 5000, 0x410, 0x44F},
    {"PL", 6000, 0x107, 0x17C},    {"NL", 7000, L'A', L'z'},      {"CH", 8000, 0x4E00, 0x9FFF},
    {"DE", 9000, L'ä', L'ü'},      {"SK", 10000, 0x10D, 0x17E},   {"HU", 11000, 0xE1, 0x171},
    {"JP", 12000, 0x3041, 0x30FF}, {"CS", 13000, 0x10D, 0x17E},   {"TR", 14000, 0x11F, 0x15F},
    {"LT", 15000, 0x105, 0x17E},   {"KO", 16000, 0xAC00, 0xD7A3},
};

struct HostTexts : testing::Test {
    HMODULE program = nullptr;

    void SetUp() override
    {
        wchar_t path[MAX_PATH];
        GetModuleFileNameW(nullptr, path, MAX_PATH);
        std::wstring name = path;
        name.resize(name.find_last_of(L'\\') + 1);
        program = LoadLibraryExW((name + L"retouch.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        ASSERT_TRUE(program);
    }
    void TearDown() override { FreeLibrary(program); }

    std::wstring text(const TextLanguage& language, int id)
    {
        wchar_t buffer[1024] = L"";
        return std::wstring(buffer, (size_t)LoadStringW(program, (UINT)(id + language.offset), buffer, 1024));
    }
};

static wchar_t keyOf(const std::wstring& caption)
{
    const size_t at = caption.find(L'&');
    return at + 1 < caption.size() ? (wchar_t)(UINT_PTR)CharUpperW((LPWSTR)(UINT_PTR)caption[at + 1]) : 0;
}

TEST_F(HostTexts, AreThereInEveryLanguage)
{
    const TextLanguage& english = languages[1];
    for (const TextLanguage& language : languages) {
        int same = 0;
        for (int id = TEXT_MENU_FILE; id <= TEXT_LOSS_XMP; ++id) {
            const std::wstring said = text(language, id);
            EXPECT_FALSE(said.empty()) << language.code << id;
            EXPECT_EQ(said.find(0xFFFD), std::wstring::npos) << language.code << id;
            same += said == text(english, id);
        }
        EXPECT_TRUE(same <= 4 || &language == &english) << language.code;  // names like "Ctrl" and "&File"
        EXPECT_TRUE(text(language, TEXT_LOSS_XMP + 1).empty()) << language.code;
    }
}

TEST_F(HostTexts, HaveTheLettersOfTheirAlphabets)
{
    for (const TextLanguage& language : languages) {
        const std::wstring hint = text(language, TEXT_HINT) + text(language, TEXT_MENU_OPEN) +
                                  text(language, TEXT_TITLE_SAVE) + text(language, TEXT_ERROR_LOST);
        int own = 0;
        for (wchar_t letter : hint)
            own += letter >= language.first && letter <= language.last;
        EXPECT_GT(own, 0) << language.code;
    }
}

TEST_F(HostTexts, OpenEachEntryOfAMenuWithAKeyOfItsOwn)
{
    const std::vector<std::vector<int>> menus = {{TEXT_MENU_FILE, TEXT_MENU_HELP},
                                                 {TEXT_MENU_OPEN, TEXT_MENU_SAVE_AS, TEXT_MENU_EXIT},
                                                 {TEXT_MENU_GUIDE, TEXT_MENU_ABOUT}};
    for (const TextLanguage& language : languages)
        for (const std::vector<int>& menu : menus) {
            std::set<wchar_t> keys;
            for (int id : menu)
                keys.insert(keyOf(text(language, id)));
            EXPECT_EQ(keys.size(), menu.size()) << language.code << menu[0];
            EXPECT_EQ(keys.count(0), 0u) << language.code << menu[0];
        }
}
