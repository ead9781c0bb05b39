// Settings that could not be read are not overwritten, unless the user has changed them.
#include "session/ground/session_extras.h"
#include "tests/session/import_patch.h"
#include "tests/unit/windowed/session_fixture.h"
#include "tools/settings/settings_file.h"

static const std::string brushLine = "T117=001,001,005,006,000,001,001,001,000,049,255\r\n";
static const std::string textLine = "T123=001,000,003,031,000,000,001,000,000,100,65280\r\n";
static const std::string fontLine = "Font=031,400,002,034,001,000,000,000,034,Courier New\r\n";
static const std::string usersFile = "[Cursors]\r\n" + brushLine + textLine + fontLine;

static const WCHAR* failingKey;  // null: every key
static ImportPatch patch;

static DWORD WINAPI failingRead(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR value, DWORD size, LPCWSTR path)
{
    if (!failingKey || lstrcmpW(key, failingKey) == 0) return 0;
    return ((DWORD(WINAPI*)(LPCWSTR, LPCWSTR, LPCWSTR, LPWSTR, DWORD, LPCWSTR))patch.before)(section, key, fallback,
                                                                                             value, size, path);
}

static DWORD WINAPI noModulePath(HMODULE, LPWSTR, DWORD)
{
    return 0;
}

static DWORD WINAPI noAttributes(LPCWSTR)
{
    return INVALID_FILE_ATTRIBUTES;
}

static int WINAPI noConversion(UINT, DWORD, LPCWCH, int, LPSTR, int, LPCCH, LPBOOL)
{
    return 0;
}

struct SettingsKept : SessionFixture {
    ModuleHome home = {};

    void SetUp() override
    {
        ASSERT_TRUE(moveModuleHome(&home));
        Dice dice = {1};
        ASSERT_TRUE(open(randomPicture(dice, 20, 20)));
        writeFile(current(), usersFile);
    }
    void TearDown() override
    {
        close();
        leaveModuleHome(&home);
    }
    std::string current() const { return home.directory + "KOVRTCH.INI"; }
    std::string older() const { return home.directory + "KOVRTOUCH.INI"; }
    bool has(const std::string& line) const { return readFile(current()).find(line) != std::string::npos; }

    // Reads while the import fails.
    void readFailing(const char* import, void* replacement)
    {
        ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), import, replacement));
        readToolSettings();
        undoPatch(&patch);
    }
};

TEST_F(SettingsKept, OneValueThatCannotBeReadStays)
{
    for (const WCHAR* key : {L"T117", L"T123", L"Font"}) {
        failingKey = key;
        writeFile(current(), usersFile);
        ASSERT_NO_FATAL_FAILURE(readFailing("GetPrivateProfileStringW", (void*)failingRead));
        writeToolSettings();
        EXPECT_TRUE(has(brushLine)) << readFile(current());
        EXPECT_TRUE(has(textLine));
        EXPECT_TRUE(has(fontLine));
        EXPECT_TRUE(has("T118=")) << "what was not there is written";
    }
}

TEST_F(SettingsKept, NothingIsOverwrittenWhateverFailsWhileReading)
{
    failingKey = nullptr;
    struct {
        const char* import;
        void* replacement;
    } failures[] = {{"GetPrivateProfileStringW", (void*)failingRead},
                    {"GetModuleFileNameW", (void*)noModulePath},
                    {"GetFileAttributesW", (void*)noAttributes},
                    {"WideCharToMultiByte", (void*)noConversion}};
    for (const auto& failure : failures) {
        SCOPED_TRACE(failure.import);
        ASSERT_NO_FATAL_FAILURE(readFailing(failure.import, failure.replacement));
        writeToolSettings();
        EXPECT_EQ(usersFile.substr(0, 10), readFile(current()).substr(0, 10));
        EXPECT_TRUE(has(brushLine)) << readFile(current());
        EXPECT_TRUE(has(textLine));
        EXPECT_TRUE(has(fontLine));
    }
}

TEST_F(SettingsKept, AFileThatAnotherProgramHoldsOpenIsNotOverwrittenLater)
{
    const HANDLE held = CreateFileA(current().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    readToolSettings();
    CloseHandle(held);
    writeToolSettings();
    EXPECT_EQ(usersFile, readFile(current()));
}

// What was not changed stays as it is stored.
TEST_F(SettingsKept, WhatTheUserChangedIsWrittenAllTheSame)
{
    failingKey = nullptr;
    ASSERT_NO_FATAL_FAILURE(readFailing("GetPrivateProfileStringW", (void*)failingRead));
    ASSERT_EQ((uint32_t)TOOL_BRUSH, session->toolSettings[1].toolId);
    session->toolSettings[1].width = 33;
    session->textFont.lfItalic = 1;
    writeToolSettings();
    EXPECT_TRUE(has("T117=001,001,033,006,000,001,001,001,000,049,255\r\n")) << readFile(current());
    EXPECT_TRUE(has("Font=020,700,002,034,001,000,000,000,034,Arial\r\n"));
    EXPECT_TRUE(has(textLine));
    EXPECT_FALSE(has("T118="));
}

TEST_F(SettingsKept, WhatCanNeverBeReadIsNotOverwrittenByAChange)
{
    struct {
        const char* import;
        void* replacement;
    } failures[] = {{"GetPrivateProfileStringW", (void*)failingRead}, {"WideCharToMultiByte", (void*)noConversion}};
    failingKey = nullptr;
    for (const auto& failure : failures) {
        SCOPED_TRACE(failure.import);
        ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), failure.import, failure.replacement));
        readToolSettings();
        session->toolSettings[1].width = 33;
        writeToolSettings();
        undoPatch(&patch);
        EXPECT_TRUE(has(brushLine)) << readFile(current());
    }
}

TEST_F(SettingsKept, AValueWithoutACharacterIsWrittenOnceItIsChanged)
{
    writeFile(current(), "[Cursors]\r\nT117=\r\n");
    readToolSettings();
    session->toolSettings[1].width = 33;
    writeToolSettings();
    EXPECT_TRUE(has("T117=000,000,033,016,001,001,001,001,000,100,12632319\r\n")) << readFile(current());
}

// A current file would keep the older one from ever being read again.
TEST_F(SettingsKept, AnOlderFileThatCannotBeReadWhollyStaysTheOneToRead)
{
    DeleteFileA(current().c_str());
    const std::string content = "[Cursors]\r\nT116=001,023,047,001,000,001,000,005,049,1193046\r\n";
    writeFile(older(), content);
    failingKey = L"T116";
    ASSERT_NO_FATAL_FAILURE(readFailing("GetPrivateProfileStringW", (void*)failingRead));
    writeToolSettings();
    EXPECT_EQ("", readFile(current()));
    readToolSettings();
    EXPECT_EQ(23u, session->toolSettings[1].width);
    writeToolSettings();
    EXPECT_TRUE(has("T117=001,000,023,047"));
}

TEST_F(SettingsKept, ASessionThatDoesNotStartWritesNothing)
{
    readToolSettings();
    session->toolSettings[1].width = 33;
    leaveToolSettings();
    writeToolSettings();
    EXPECT_EQ(usersFile, readFile(current()));
}

// Numbers stand at fixed positions, four characters each: a longer one would move all that follow.
TEST_F(SettingsKept, NothingWrittenIsLongerThanItsPlace)
{
    readToolSettings();
    for (int height : {1000, 4096, -8, -1200}) {
        SCOPED_TRACE(height);
        ToolSettings& text = session->toolSettings[8];
        ASSERT_EQ((uint32_t)TOOL_TEXT, text.toolId);
        text.height = (uint32_t)abs(height);
        text.opacity = 77;
        text.colour = 0x123456;
        session->textFont.lfHeight = height;
        session->textFont.lfWeight = 1000;
        session->textFont.lfItalic = 1;
        strcpy(session->textFont.lfFaceName, "Courier New");
        writeToolSettings();
        readToolSettings();
        const int expected = abs(height) > 999 ? 999 : abs(height);
        EXPECT_EQ((uint32_t)expected, session->toolSettings[8].height);
        EXPECT_EQ(77u, session->toolSettings[8].opacity);
        EXPECT_EQ(0x123456u, session->toolSettings[8].colour);
        EXPECT_EQ(expected, session->textFont.lfHeight);
        EXPECT_EQ(999, session->textFont.lfWeight);
        EXPECT_EQ(1, session->textFont.lfItalic);
        EXPECT_STREQ("Courier New", session->textFont.lfFaceName);
    }
    session->toolSettings[1].width = (uint32_t)-1;
    writeToolSettings();
    readToolSettings();
    EXPECT_EQ(49u, session->toolSettings[1].opacity);
    EXPECT_EQ(255u, session->toolSettings[1].colour);
}
