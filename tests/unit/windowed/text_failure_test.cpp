// A line of text while the system refuses things: what is stamped is what was typed, or nothing; and the font
// dialog, whose record is its own until OK.
#include <windows.h>

#include <commdlg.h>

#include <map>

#include "resources/resource_ids.h"
#include "session/ground/session_extras.h"
#include "tests/session/import_patch.h"
#include "tests/unit/windowed/session_fixture.h"
#include "text/font_dialog.h"
#include "text/text_tool.h"

// How many of the calls still succeed, before one fails or all do.
static int callsLeft;
static bool goesOnFailing;
static ImportPatch patch;

static bool failsNow()
{
    const int left = callsLeft--;
    return left == 0 || (left < 0 && goesOnFailing);
}

template <typename Function>
static Function original(Function)
{
    return (Function)patch.before;
}

static LPVOID WINAPI failingLock(HGLOBAL block)
{
    return failsNow() ? nullptr : original(failingLock)(block);
}

static HDC WINAPI failingContext(HDC dc)
{
    return failsNow() ? nullptr : original(failingContext)(dc);
}

static HGDIOBJ WINAPI failingSelect(HDC dc, HGDIOBJ object)
{
    return failsNow() ? nullptr : original(failingSelect)(dc, object);
}

static int WINAPI failingBits(HDC dc, HBITMAP bitmap, UINT start, UINT count, LPVOID bits, LPBITMAPINFO info,
                              UINT usage)
{
    return failsNow() ? 0 : original(failingBits)(dc, bitmap, start, count, bits, info, usage);
}

static int WINAPI failingText(HDC dc, LPCSTR text, int count, LPRECT rect, UINT format)
{
    return failsNow() ? 0 : original(failingText)(dc, text, count, rect, format);
}

static int WINAPI failingFill(HDC dc, const RECT* rect, HBRUSH brush)
{
    return failsNow() ? 0 : original(failingFill)(dc, rect, brush);
}

static HGLOBAL WINAPI failingAlloc(UINT flags, SIZE_T size)
{
    return failsNow() ? nullptr : original(failingAlloc)(flags, size);
}

struct Failure {
    const char* import;
    void* replacement;
};

static const Failure failures[] = {
    {"GlobalLock", (void*)failingLock},     {"CreateCompatibleDC", (void*)failingContext},
    {"SelectObject", (void*)failingSelect}, {"GetDIBits", (void*)failingBits},
    {"DrawTextA", (void*)failingText},      {"FillRect", (void*)failingFill},
    {"GlobalAlloc", (void*)failingAlloc},
};

struct TextFailure : SessionFixture {
    reference::Picture picture;

    bool openPicture()
    {
        Dice dice = {5};
        picture = randomPicture(dice, 160, 60);
        if (!open(picture)) return false;
        session->brushHeight = 20;
        return true;
    }

    std::vector<uint8_t> bytes() const
    {
        const uint8_t* const first = (const uint8_t*)GlobalLock(image);
        const std::vector<uint8_t> all(first, first + GlobalSize(image));
        GlobalUnlock(image);
        return all;
    }

    std::string line() const
    {
        if (!session->textBuffer) return "";
        const std::string text = (const char*)GlobalLock(session->textBuffer);
        GlobalUnlock(session->textBuffer);
        return text;
    }

    // The image with this text stamped, by a session in which nothing fails.
    std::vector<uint8_t> stamped(const std::string& text)
    {
        EXPECT_TRUE(openPicture());
        textClick(session->canvasWindow, 30, 40);
        for (char character : text)
            textChar(session->canvasWindow, (uint8_t)character);
        textKeyDown(session->canvasWindow, VK_RETURN);
        const std::vector<uint8_t> result = bytes();
        close();
        return result;
    }

    template <typename Action>
    void failDuring(const Failure& failure, int before, bool forEver, Action action)
    {
        ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), failure.import, failure.replacement));
        callsLeft = before;
        goesOnFailing = forEver;
        action();
        undoPatch(&patch);
    }
};

TEST_F(TextFailure, OnlyWhatWasTypedIsStamped)
{
    std::map<std::string, std::vector<uint8_t>> expected;
    for (const char* text : {"", "W", "Wj", "WjX"})
        expected[text] = stamped(text);
    ASSERT_TRUE(openPicture());
    const std::vector<uint8_t> untouched = bytes();
    close();
    ASSERT_FALSE(expected["WjX"] == expected["Wj"]);
    int refused = 0;
    for (const Failure& failure : failures) {
        for (int when = 0; when < 2; ++when) {  // while the last letter is typed; while the line is stamped
            for (bool forEver : {false, true}) {
                for (int before = 0; before < 7; ++before) {
                    SCOPED_TRACE(testing::Message() << failure.import << " after " << before << " calls, "
                                                    << (when ? "stamping" : "typing") << (forEver ? ", for ever" : ""));
                    ASSERT_TRUE(openPicture());
                    const HWND canvas = session->canvasWindow;
                    ASSERT_EQ(1, textClick(canvas, 30, 40));
                    textChar(canvas, 'W');
                    textChar(canvas, 'j');
                    if (when == 0) failDuring(failure, before, forEver, [&] { textChar(canvas, 'X'); });
                    if (when == 1) textChar(canvas, 'X');
                    const std::string typed = line();
                    ASSERT_TRUE(typed == "Wj" || typed == "WjX") << typed;
                    if (when == 0) textKeyDown(canvas, VK_RETURN);
                    if (when == 1) failDuring(failure, before, forEver, [&] { textKeyDown(canvas, VK_RETURN); });
                    const std::vector<uint8_t> now = bytes();
                    if (now == untouched) {
                        ++refused;
                        EXPECT_EQ(1, when) << "nothing failed while stamping";
                        EXPECT_EQ(typed, line()) << "what was not stamped stays to be stamped again";
                        textKeyDown(canvas, VK_RETURN);
                        EXPECT_TRUE(bytes() == expected[typed]);
                    } else {
                        EXPECT_TRUE(now == expected[typed]);
                    }
                    close();
                }
            }
        }
    }
    EXPECT_GE(refused, 10) << "failures that kept the line from being stamped";
}

TEST_F(TextFailure, ALineThatCannotBeOpenedLeavesNothing)
{
    for (const Failure& failure : failures) {
        for (int before = 0; before < 12; ++before) {
            SCOPED_TRACE(testing::Message() << failure.import << " after " << before);
            ASSERT_TRUE(openPicture());
            int opened = 0;
            failDuring(failure, before, true, [&] { opened = textClick(session->canvasWindow, 30, 40); });
            EXPECT_EQ(opened != 0, session->textBuffer != nullptr);
            EXPECT_TRUE(opened || (!session->textStrip && !session->textFontHandle));
            endText(session->canvasWindow);
            EXPECT_EQ(1, textClick(session->canvasWindow, 30, 40));
            close();
        }
    }
}

// ---- the font dialog ----

static bool answersOk;
static bool endsSession;

// As the system's own: it writes into its record while it is open, whatever it answers.
static BOOL WINAPI fakeChooseFont(CHOOSEFONTA* dialog)
{
    dialog->lpLogFont->lfHeight = -31;
    dialog->lpLogFont->lfItalic = TRUE;
    strcpy(dialog->lpLogFont->lfFaceName, "Courier New");
    dialog->rgbColors = RGB(1, 2, 3);
    if (endsSession) sessionExtras.leaving = LEAVING_CLOSED;
    return answersOk;
}

struct FontDialog : TextFailure {
    ImportPatch dialogPatch;
    LOGFONTA before;
    COLORREF colour;

    void choose(bool ok, bool ending)
    {
        answersOk = ok;
        endsSession = ending;
        ASSERT_TRUE(openPicture());
        session->textFont.lfHeight = 20;
        before = session->textFont;
        colour = session->paintColour;
        ASSERT_TRUE(patchImport(&dialogPatch, GetModuleHandleA(nullptr), "ChooseFontA", (void*)fakeChooseFont));
        chooseTextFont(nullptr);
        undoPatch(&dialogPatch);
        sessionExtras.leaving = LEAVING_UNDECIDED;
    }
    void expectUnchanged()
    {
        EXPECT_EQ(0, memcmp(&before, &session->textFont, sizeof before));
        EXPECT_EQ(20u, session->brushHeight);
        EXPECT_EQ(colour, session->paintColour);
        EXPECT_EQ(nullptr, session->textFontHandle);
    }
};

TEST_F(FontDialog, CancelChangesNothing)
{
    choose(false, false);
    expectUnchanged();
    EXPECT_TRUE(IsWindowEnabled(host));
}

TEST_F(FontDialog, OkTakesFontHeightAndColour)
{
    choose(true, false);
    EXPECT_STREQ("Courier New", session->textFont.lfFaceName);
    EXPECT_EQ(1, session->textFont.lfItalic);
    EXPECT_EQ(31, session->textFont.lfHeight);
    EXPECT_EQ(31u, session->brushHeight);
    EXPECT_EQ(RGB(1, 2, 3), session->paintColour);
    EXPECT_NE(nullptr, session->textFontHandle);
    DeleteObject(session->textFontHandle);
}

TEST_F(FontDialog, MakesNothingWhenTheSessionEndedMeanwhile)
{
    choose(true, true);
    expectUnchanged();
}
