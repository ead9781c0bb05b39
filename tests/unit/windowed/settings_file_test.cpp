// The settings file beside the module: what is written, and what comes back from files good and bad.
#include "tests/unit/windowed/session_fixture.h"

#include <climits>

#include "canvas/session_defaults.h"
#include "session/ground/session_extras.h"
#include "tools/palette/palette_controls.h"
#include "tools/settings/settings_file.h"

struct SettingsFile : SessionFixture {
    ModuleHome home = {};

    void SetUp() override
    {
        ASSERT_TRUE(moveModuleHome(&home));
        Dice dice = {1};
        ASSERT_TRUE(open(randomPicture(dice, 20, 20)));
    }
    void TearDown() override
    {
        close();
        leaveModuleHome(&home);
    }
    std::string current() const { return home.directory + "KOVRTCH.INI"; }
    std::string older() const { return home.directory + "KOVRTOUCH.INI"; }
};

static ToolSettings* settingsOf(uint32_t tool)
{
    for (ToolSettings& settings : session->toolSettings) {
        if (settings.toolId == tool) return &settings;
    }
    return nullptr;
}

struct KeptSettings {
    ToolSettings tools[TOOL_COUNT];
    LOGFONTA font;
};

static KeptSettings kept()
{
    KeptSettings now;
    memcpy(now.tools, session->toolSettings, sizeof now.tools);
    now.font = session->textFont;
    return now;
}

static bool operator==(const KeptSettings& a, const KeptSettings& b)
{
    return memcmp(a.tools, b.tools, sizeof a.tools) == 0 && memcmp(&a.font, &b.font, sizeof a.font) == 0;
}

constexpr char DEFAULT_FILE[] = "[Cursors]\r\n"
                                "T116=000,000,016,016,001,001,001,000,000,100,12632319\r\n"
                                "T117=000,000,016,016,001,001,001,001,000,100,12632319\r\n"
                                "T121=000,000,016,016,001,001,001,001,000,100,12632319\r\n"
                                "T119=000,000,016,016,001,001,001,001,000,100,12632319\r\n"
                                "T120=000,000,016,016,001,001,001,001,000,100,12632319\r\n"
                                "T122=000,000,016,016,001,001,001,001,000,100,12632319\r\n"
                                "T118=000,000,016,016,001,001,001,001,000,100,12632319\r\n"
                                "T114=000,000,016,016,001,001,001,000,000,100,12632319\r\n"
                                "T123=000,000,016,016,000,000,001,000,000,100,12632319\r\n"
                                "T115=000,000,016,016,001,001,001,001,000,100,12632319\r\n"
                                "Font=020,700,002,034,000,000,000,000,034,Arial\r\n";

TEST_F(SettingsFile, WrittenByteForByte)
{
    EXPECT_EQ(1, writeToolSettings());
    EXPECT_EQ("", readFile(current())) << "nothing is written that was not read before";
    EXPECT_EQ(1, readToolSettings());
    EXPECT_EQ(1, writeToolSettings());
    EXPECT_EQ(DEFAULT_FILE, readFile(current()));
}

TEST_F(SettingsFile, WithoutAFileEverythingStaysAsItIs)
{
    const KeptSettings before = kept();
    EXPECT_EQ(1, readToolSettings());
    EXPECT_TRUE(before == kept());
    EXPECT_EQ("", readFile(current())) << "reading creates nothing";
}

TEST_F(SettingsFile, EverythingComesBack)
{
    readToolSettings();
    Dice dice = {7};
    for (ToolSettings& settings : session->toolSettings) {
        settings = {settings.toolId,         (uint32_t)dice.upTo(1),        (uint32_t)dice.upTo(1),
                    (uint32_t)dice.upTo(1),  (uint32_t)dice.between(1, 48), (uint32_t)dice.between(1, 48),
                    (uint32_t)dice.upTo(99), (uint32_t)dice.upTo(1),        (uint32_t)dice.upTo(1),
                    (uint32_t)dice.upTo(1),  (uint32_t)dice.upTo(0xFFFFFF), (uint32_t)dice.between(16, 100)};
    }
    session->textFont.lfHeight = 31;
    session->textFont.lfItalic = 1;
    session->textFont.lfCharSet = 204;
    strcpy(session->textFont.lfFaceName, "Times New Roman");
    const KeptSettings written = kept();
    writeToolSettings();
    const SessionExtras extras = sessionExtras;
    writeSessionDefaults();
    sessionExtras = extras;
    ASSERT_FALSE(written == kept());
    readToolSettings();
    EXPECT_TRUE(written == kept());
}

TEST_F(SettingsFile, OtherSectionsAndKeysOfTheFileAreKept)
{
    writeFile(current(), "[Other]\r\nA=1\r\n[Cursors]\r\nT117=001,001,005,006,000,001,001,001,000,049,255\r\n");
    readToolSettings();
    EXPECT_EQ(5u, settingsOf(TOOL_BRUSH)->width);
    EXPECT_EQ(16u, settingsOf(TOOL_RUBBER)->width) << "a missing key leaves its block";
    writeToolSettings();
    EXPECT_NE(std::string::npos, readFile(current()).find("[Other]\r\nA=1\r\n"));
}

TEST_F(SettingsFile, OlderFileNumbersTheToolsOneLowerContrastExcepted)
{
    const std::string content = "[Cursors]\r\n"
                                "T116=001,023,047,001,000,001,000,005,049,1193046\r\n"  // Brush
                                "T114=001,011,012,001,001,001,001,000,100,255\r\n"  // Contrast, and tool 115's number
                                "Font=030,400,002,034,000,000,000,000,034,Courier New\r\n";
    writeFile(older(), content);
    const ToolSettings outlineBrush = *settingsOf(TOOL_OUTLINE_BRUSH);
    settingsOf(TOOL_BRUSH)->edge = 1;
    readToolSettings();
    const ToolSettings brush = {TOOL_BRUSH, 1, 1, 0, 23, 47, 5, 1, 0, 1, 1193046, 49};
    EXPECT_EQ(0, memcmp(&brush, settingsOf(TOOL_BRUSH), sizeof brush)) << "edge is left alone";
    EXPECT_EQ(11u, settingsOf(TOOL_CONTRAST)->width);
    EXPECT_EQ(0, memcmp(&outlineBrush, settingsOf(TOOL_OUTLINE_BRUSH), sizeof outlineBrush));
    EXPECT_EQ(30, session->textFont.lfHeight);
    EXPECT_STREQ("Courier New", session->textFont.lfFaceName);
    writeToolSettings();
    EXPECT_EQ(content, readFile(older())) << "it is never written";
    EXPECT_NE("", readFile(current()));
}

TEST_F(SettingsFile, OlderFileIsNotReadBesideTheCurrentOne)
{
    writeFile(older(), "[Cursors]\r\nT116=001,023,047,001,000,001,000,005,049,1193046\r\n");
    writeFile(current(), "[Cursors]\r\n");
    readToolSettings();
    EXPECT_EQ(16u, settingsOf(TOOL_BRUSH)->width);
}

TEST_F(SettingsFile, PlaceThatCannotBeWrittenIsLeftAlone)
{
    const std::string content = "[Cursors]\r\nT117=001,001,005,006,000,001,001,001,000,049,255\r\n";
    writeFile(current(), content);
    // Held open, because an administrator may write to what is read-only.
    const HANDLE held =
        CreateFileA(current().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    readToolSettings();
    EXPECT_EQ(5u, settingsOf(TOOL_BRUSH)->width);
    EXPECT_EQ(1, writeToolSettings());
    EXPECT_EQ(content, readFile(current()));
    CloseHandle(held);
    DeleteFileA(current().c_str());

    CreateDirectoryA(current().c_str(), nullptr);  // nothing can be written where a directory stands
    writeFile(older(), "[Cursors]\r\nT116=001,023,047,001,000,001,000,005,049,1193046\r\n");
    EXPECT_EQ(1, readToolSettings());
    EXPECT_EQ(23u, settingsOf(TOOL_BRUSH)->width) << "a directory is no settings file";
    EXPECT_EQ(1, writeToolSettings());
}

// What the session works with after a tool with these settings was chosen.
static void chooseBrush()
{
    loadToolSettings(nullptr, TOOL_BRUSH);
}

static void expectSaneBrush(const char* what)
{
    EXPECT_TRUE(session->brushWidth >= 1 && session->brushWidth <= 48) << what << ": width " << session->brushWidth;
    EXPECT_TRUE(session->brushHeight >= 1 && session->brushHeight <= 48) << what << ": height " << session->brushHeight;
    EXPECT_LE(session->brushShape, 1u) << what;
    EXPECT_LE(session->edgeMode, 1u) << what;
    EXPECT_LE(session->opacity, 100u) << what;
    EXPECT_LE(session->paintColour, 0xFFFFFFu) << what;
    EXPECT_NE(nullptr, session->brushMask) << what;
}

TEST_F(SettingsFile, HostileValuesGiveASaneBrush)
{
    const std::string nines(10000, '9'), letters(10000, 'x');
    const std::string values[] = {
        "-01,-01,-16,-16,-01,-01,-01,-01,-01,-50,-1",
        "999,999,999,999,999,999,999,999,999,999,99999999999999999999",
        "002,002,000,000,000,000,000,000,000,000,-99999999999999999999",
        "99999999999999999999,99999999999999999999,99999999999999999999",
        nines,
        letters,
        ",,,,,,,,,,",
        "",
        "1",
        "000,000,2147483648,4294967295,-2147483649,",
    };
    for (const std::string& value : values) {
        writeFile(current(), "[Cursors]\r\nT117=" + value + "\r\n");
        EXPECT_EQ(1, readToolSettings());
        chooseBrush();
        expectSaneBrush(value.substr(0, 40).c_str());
    }
}

TEST_F(SettingsFile, HostileFontsStayInsideTheFontRecord)
{
    const std::string face(10000, 'f');
    const HFONT handle = session->textFontHandle;  // the record's next field
    writeFile(current(), "[Cursors]\r\nFont=020,700,002,034,000,000,000,000,034," + face + "\r\n");
    EXPECT_EQ(1, readToolSettings());
    EXPECT_EQ(std::string(LF_FACESIZE - 1, 'f'), session->textFont.lfFaceName);
    EXPECT_EQ(handle, session->textFontHandle);

    writeFile(current(), "[Cursors]\r\nFont=99999999999,99999999999,-01,999,999,999,999,999,034,Arial\r\n");
    EXPECT_EQ(1, readToolSettings());
    EXPECT_LE(session->textFont.lfHeight, 4096);
    EXPECT_LE(session->textFont.lfWeight, 1000);
    writeFile(current(), "[Cursors]\r\nFont=-99999999999\r\n");
    EXPECT_EQ(1, readToolSettings());
    EXPECT_GE(session->textFont.lfHeight, -4096);
    const HFONT font = CreateFontIndirectA(&session->textFont);
    EXPECT_NE(nullptr, font);
    DeleteObject(font);
}

TEST_F(SettingsFile, ZeroBytesAndBinaryContentAreSurvived)
{
    Dice dice = {3};
    for (int k = 0; k < 50; ++k) {
        std::string content = "[Cursors]\r\nT117=";
        for (int n = dice.upTo(3000); n > 0; --n)
            content += (char)dice.upTo(255);
        writeFile(current(), content);
        EXPECT_EQ(1, readToolSettings());
        chooseBrush();
        expectSaneBrush("binary");
    }
}
