// The text tool in a running session: what the screen shows while a line is typed, what ends a line, and
// what stamping leaves in the image.
#include <windows.h>

#include <commdlg.h>
#include <dlgs.h>

#include "tests/session/text_fixture.h"

struct Text : TextSession {
    std::string chosenFace;
    void takeLookOf(const std::string& value);

    std::string setting(const char* name)
    {
        char value[128] = "";
        GetPrivateProfileStringA("Cursors", name, "", value, sizeof value, (library.directory + "KOVRTCH.INI").c_str());
        return value;
    }
};

TEST_F(Text, LineShowsOverTheImageAsItWillBeStamped)
{
    openWithText();
    click(40, 70);
    expectCaret(40, 54);
    type("Wing & Jy\xE9\xC4");
    expectLineOnScreen("Wing & Jy\xE9\xC4", 40, 54);
    expectCaret(40 + widthOf(look, "Wing & Jy\xE9\xC4"), 54);
    EXPECT_TRUE(before == snapshot(photo)) << "not yet part of the image";
    key(VK_HOME);
    type("X");
    expectLineOnScreen("Xing & Jy\xE9\xC4", 40, 54);
    key(VK_RETURN);
    Block stamped = before;
    stamp(stamped, "Xing & Jy\xE9\xC4", 40, 54);
    EXPECT_FALSE(stamped == before);
    EXPECT_TRUE(stamped == snapshot(photo));
    expectLineOnScreen("", 40, 70);
    expectCaret(40, 70);
    type("2");
    expectLineOnScreen("2", 40, 70);
    saveAndCheck();
    EXPECT_TRUE(stamped == snapshot(photo)) << "Save must not stamp the open line";
}

TEST_F(Text, LinesAtTheBorders)
{
    static const POINT places[] = {{0, 100}, {299, 100}, {270, 50}, {100, 5}, {100, 199}, {20, 197}};
    for (const POINT& place : places) {
        SCOPED_TRACE(testing::Message() << place.x << ", " << place.y);
        usePhoto(300, 200);
        openWithText();
        click(place.x, place.y);
        type("Wjg");
        std::string text = "Wjg";
        while (!text.empty() && place.x + widthOf(look, text.substr(0, text.size() - 1) + '\0') >= photo.width)
            text.pop_back();
        expectLineOnScreen(text, place.x, place.y - 16);
        key(VK_RETURN);
        Block stamped = before;
        stamp(stamped, text, place.x, place.y - 16);
        EXPECT_TRUE(stamped == snapshot(photo));
        saveAndCheck();
    }
}

TEST_F(Text, HalfOpacity)
{
    openWithText();
    for (int page = 0; page < 3; ++page)
        ASSERT_TRUE(clickScrollBar(&host, ID_OPACITY, -2));
    ASSERT_EQ(70, scrollPosition(host, ID_OPACITY));
    click(30, 60);
    type("half");
    expectLineOnScreen("half", 30, 44);  // shown in full
    key(VK_RETURN);
    Block stamped = before;
    stamp(stamped, "half", 30, 44, 49);
    EXPECT_TRUE(stamped == snapshot(photo));
    saveAndCheck();
}

TEST_F(Text, ClickElsewhereStampsAndOpensCentred)
{
    openWithText();
    click(30, 60);
    type("first");
    click(120, 150);
    Block stamped = before;
    stamp(stamped, "first", 30, 44);
    EXPECT_TRUE(stamped == snapshot(photo));
    expectCaret(120, 142);
    type("second");
    expectLineOnScreen("second", 120, 142);
    click(290, 150);  // right of the text, in its line: the caret goes past the end
    expectCaret(120 + widthOf(look, "second"), 142);
    type("!");
    expectLineOnScreen("second", 120, 142);
    saveAndCheck();
    EXPECT_TRUE(stamped == snapshot(photo));
}

TEST_F(Text, EnterOnTheLastLineStampsItAgain)
{
    openWithText();
    for (int page = 0; page < 3; ++page)
        ASSERT_TRUE(clickScrollBar(&host, ID_OPACITY, -2));
    click(30, 195);
    type("last");
    Block stamped = before;
    for (int i = 0; i < 3; ++i) {
        key(VK_RETURN);
        if (i == 0) {
            stamp(stamped, "last", 30, 179, 49);
            EXPECT_TRUE(stamped == snapshot(photo));
            expectCaret(30, 195);  // one more line begins above the bottom: that is the last one
            type("last");
        } else {
            stamp(stamped, "last", 30, 195, 49);
            EXPECT_TRUE(stamped == snapshot(photo)) << i;
            expectLineOnScreen("last", 30, 195);
        }
    }
    closeAndCheck(before);
}

// At scales at which the strip's edges fall between pixels, too.
TEST_F(Text, EscapeLeavesNoPixel)
{
    static const SIZE clients[] = {{300, 200}, {450, 300}, {210, 140}, {299, 199}};
    for (const SIZE& client : clients) {
        SCOPED_TRACE(client.cx);
        usePhoto(300, 200, client.cx, client.cy);
        openWithText();
        click(client.cx / 9, client.cy / 3);
        key(VK_ESCAPE);
        empty = shownBy(host.canvas);  // with the strip repainted on its own, as it will be
        click(client.cx / 9, client.cy / 3);
        type("Escape");
        EXPECT_FALSE(empty.bytes == shownBy(host.canvas).bytes);
        key(VK_ESCAPE);
        expectNothingLeft();
        closeAndCheck(before);
    }
}

TEST_F(Text, PaletteCommandsLeaveNothing)
{
    openWithText();
    for (int id : {(int)ID_COLORS, (int)ID_UNDO, (int)ID_CIRCLE, (int)ID_FULL}) {
        SCOPED_TRACE(id);
        click(40, 70);
        type("Gone");
        ASSERT_TRUE(clickControl(&host, id));
        expectNothingLeft();
        ASSERT_TRUE(id != ID_COLORS || clickControl(&host, ID_TEXT));
    }
    click(40, 70);
    type("Gone");
    closeAndCheck(before);
}

TEST_F(Text, OtherToolsLeaveNothing)
{
    openWithText();
    for (int id = ID_SELECTION; id < ID_TEXT; ++id) {
        SCOPED_TRACE(id);
        click(40, 70);
        type("Gone");
        expectLineOnScreen("Gone", 40, 54);
        ASSERT_TRUE(clickControl(&host, id));
        expectNothingLeft();
        ASSERT_TRUE(clickControl(&host, ID_TEXT));
    }
    saveAndCheck();
    EXPECT_TRUE(before == snapshot(photo));
}

// The line is typed, shown and stamped in image pixels. The caret stands at the image's coordinates taken for
// the window's: it sits on the text at the image's own size only.
TEST_F(Text, CaretKeepsToImageCoordinatesAtOtherScales)
{
    usePhoto(300, 200, 450, 300);
    openWithText();
    click(150, 150);
    expectCaret(100, 84);
    type("Wj");
    expectCaret(100 + widthOf(look, "Wj"), 84);
    key(VK_HOME);
    expectCaret(100, 84);
    key(VK_RETURN);
    expectCaret(100, 100);
    Block stamped = before;
    stamp(stamped, "Wj", 100, 84);
    EXPECT_TRUE(stamped == snapshot(photo));
    closeAndCheck(before);
}

static BOOL CALLBACK findFontDialog(HWND window, LPARAM lp)
{
    const bool found = IsWindowVisible(window) && GetDlgItem(window, cmb1) && GetDlgItem(window, cmb3);
    if (found) *(HWND*)lp = window;
    return !found;
}

static HWND fontDialog(const Host& host)
{
    HWND dialog = nullptr;
    EnumThreadWindows(host.threadId, findFontDialog, (LPARAM)&dialog);
    return dialog;
}

static bool closeFontDialog(Host* host, int button)
{
    PostMessageA(fontDialog(*host), WM_COMMAND, (WPARAM)button, (LPARAM)GetDlgItem(fontDialog(*host), button));
    return waitUntil("the font dialog to close", [&] { return !fontDialog(*host); }) && settle(host);
}

TEST_F(Text, FontDialogEndsTheLine)
{
    openWithText();
    click(40, 70);
    type("Gone");
    ASSERT_TRUE(clickControl(&host, ID_TEXT));
    ASSERT_TRUE(waitUntil("the font dialog to open", [&] { return fontDialog(host) != nullptr; }));
    EXPECT_FALSE(IsWindowEnabled(host.dialog));
    ASSERT_TRUE(closeFontDialog(&host, IDCANCEL));
    EXPECT_TRUE(IsWindowEnabled(host.dialog));
    expectNothingLeft();
    click(40, 70);
    expectCaret(40, 54);  // cancelled: the height is the old one
    closeAndCheck(before);
}

// A value of the settings file: numbers of three digits, then the face.
void Text::takeLookOf(const std::string& value)
{
    ASSERT_GT(value.size(), 36u);
    const char* text = value.c_str();
    look.font.lfHeight = atoi(text);
    look.font.lfWeight = atoi(text + 4);
    look.font.lfQuality = (BYTE)atoi(text + 8);
    look.font.lfPitchAndFamily = (BYTE)atoi(text + 32);
    look.font.lfCharSet = atoi(text + 28) ? (BYTE)atoi(text + 28) : (BYTE)DEFAULT_CHARSET;
    lstrcpynA(look.font.lfFaceName, text + 36, LF_FACESIZE);
    EXPECT_EQ(chosenFace, look.font.lfFaceName);
}

// The chosen font is a tool setting like others: it holds from then on, and in the next session, also
// when nothing was typed with it.
TEST_F(Text, ChosenFontComesBackInTheNextSession)
{
    openWithText();
    ASSERT_TRUE(clickControl(&host, ID_TEXT));
    ASSERT_TRUE(waitUntil("the font dialog to open", [&] { return fontDialog(host) != nullptr; }));
    runOnHost(&host, [&] {
        const HWND dialog = fontDialog(host), sizes = GetDlgItem(dialog, cmb3);
        const LRESULT row = SendMessageA(sizes, CB_FINDSTRINGEXACT, (WPARAM)-1, (LPARAM) "24");
        SendMessageA(sizes, CB_SETCURSEL, (WPARAM)row, 0);
        SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(cmb3, CBN_SELCHANGE), (LPARAM)sizes);
        char face[LF_FACESIZE] = "";
        GetDlgItemTextA(dialog, cmb1, face, sizeof face);
        chosenFace = face;
    });
    ASSERT_TRUE(closeFontDialog(&host, IDOK));
    closeAndCheck(before);
    EXPECT_EQ(0u, setting("T123").find("001,000,003,032,000,000,")) << setting("T123");
    takeLookOf(setting("Font"));
    EXPECT_EQ(32, look.font.lfHeight) << "24 points at 96 dots an inch: " << setting("Font");
    openWithText();
    click(40, 90);
    expectCaret(40, 58);
    type("Next");
    expectLineOnScreen("Next", 40, 58);
    closeAndCheck(before);
}

static void chooseRow(HWND dialog, int list, LRESULT row)
{
    const HWND rows = GetDlgItem(dialog, list);
    EXPECT_NE(CB_ERR, SendMessageA(rows, CB_SETCURSEL, (WPARAM)row, 0)) << list;
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE), (LPARAM)rows);
}

static LRESULT rowOf(HWND dialog, int list, const char* text)
{
    return SendDlgItemMessageA(dialog, list, CB_FINDSTRINGEXACT, (WPARAM)-1, (LPARAM)text);
}

TEST_F(Text, FontDialogSetsFontHeightAndColour)
{
    openWithText();
    ASSERT_TRUE(clickControl(&host, ID_TEXT));
    ASSERT_TRUE(waitUntil("the font dialog to open", [&] { return fontDialog(host) != nullptr; }));
    runOnHost(&host, [&] {
        const HWND dialog = fontDialog(host);
        chooseRow(dialog, cmb1, rowOf(dialog, cmb1, "Liberation Serif"));
        chooseRow(dialog, cmb2, 1);  // italic; this and the colour have names in the system's language
        chooseRow(dialog, cmb3, rowOf(dialog, cmb3, "18"));
        chooseRow(dialog, cmb4, 14);  // aqua
    });
    ASSERT_TRUE(closeFontDialog(&host, IDOK));
    const Look first = look;
    strcpy(look.font.lfFaceName, "Liberation Serif");
    look.font.lfPitchAndFamily = VARIABLE_PITCH | FF_ROMAN;
    look.font.lfWeight = FW_NORMAL;
    look.font.lfItalic = TRUE;
    look.font.lfHeight = 24;  // 18 points at 96 dots an inch
    look.colour = RGB(0, 255, 255);
    EXPECT_NE(widthOf(first, "Serif, 18"), widthOf(look, "Serif, 18"));
    click(40, 90);
    expectCaret(40, 66);
    type("Serif, 18");
    expectCaret(40 + widthOf(look, "Serif, 18"), 66);
    expectLineOnScreen("Serif, 18", 40, 66);
    key(VK_RETURN);
    Block stamped = before;
    stamp(stamped, "Serif, 18", 40, 66);
    EXPECT_TRUE(stamped == snapshot(photo));
    saveAndCheck();

    before = snapshot(photo);
    openWithText();  // font, height and colour are those of the session before
    click(40, 170);
    expectCaret(40, 146);
    type("Again");
    expectLineOnScreen("Again", 40, 146);
    closeAndCheck(before);
}

TEST_F(Text, HeightBarSetsTheFontsHeight)
{
    openWithText();
    click(40, 70);
    type("Gone");
    ASSERT_TRUE(clickScrollBar(&host, ID_HEIGHT, 2));
    expectNothingLeft();
    look.font.lfHeight = 24;
    click(40, 90);
    expectCaret(40, 66);
    type("High");
    expectLineOnScreen("High", 40, 66);
    closeAndCheck(before);
    openWithText();
    click(40, 90);
    expectCaret(40, 66);
    closeAndCheck(before);
}

// Posts a character thirty times a second.
static DWORD WINAPI typeThirtyASecond(void* canvas)
{
    for (int i = 0; i < 300; ++i) {
        PostMessageA((HWND)canvas, WM_CHAR, (WPARAM)('a' + i % 26), 1);
        Sleep(33);
    }
    return 0;
}

// A measurement, run by hand: how often the screen lacks what has been typed while more is typed on a photo of
// 24 megapixels.
TEST_F(Text, DISABLED_EverySampleShowsWhatWasTyped)
{
    usePhoto(6000, 4000, 900, 600);
    openWithText();
    for (int page = 0; page < 4; ++page)
        ASSERT_TRUE(clickScrollBar(&host, ID_HEIGHT, 2));
    click(60, 300);
    const POINT corner = onCanvas(host, 60, 285);
    look.font.lfHeight = scrollPosition(host, ID_HEIGHT);
    const int width = widthOf(look, "WWWW") * 900 / 6000 - 1;  // up to where the next letter begins
    const RECT part = {corner.x, corner.y, corner.x + width, corner.y + 20};
    const Block without = screenPart(part).bytes;
    type("WWWW");
    const Block with = screenPart(part).bytes;
    ASSERT_NE(without, with);
    const HANDLE typist = CreateThread(nullptr, 0, typeThirtyASecond, host.canvas, 0, nullptr);
    int samples = 0, lacking = 0, bare = 0;
    while (WaitForSingleObject(typist, 0) == WAIT_TIMEOUT) {
        const Block now = screenPart(part).bytes;
        ++samples;
        lacking += now != with;
        bare += now == without;
    }
    CloseHandle(typist);
    ASSERT_TRUE(settle(&host));
    printf("%d of %d samples lack a part of the text, %d lack all of it\n", lacking, samples, bare);
    EXPECT_EQ(0, lacking);
    key(VK_ESCAPE);
    EXPECT_EQ(without, screenPart(part).bytes);  // so the letters were there to be lost
    closeAndCheck(before);
}

// The scroll bars have carets of their own, and the system has only one.
TEST_F(Text, TheCaretComesBackAfterAScrollBarHadTheFocus)
{
    openWithText();
    click(40, 70);
    type("Wj");
    const RECT before = caret();
    ASSERT_FALSE(IsRectEmpty(&before));
    ASSERT_TRUE(clickScrollBar(&host, ID_OPACITY, -2));
    runOnHost(&host, [&] { SetFocus(GetDlgItem(host.palette, ID_OPACITY)); });
    ASSERT_TRUE(settle(&host));
    const RECT meanwhile = caret();
    EXPECT_TRUE(IsRectEmpty(&meanwhile)) << "the bar has the focus";
    click(40 + widthOf(look, "W"), 62);
    EXPECT_TRUE(waitUntil("the caret", [&] {
        const RECT now = caret();
        return !IsRectEmpty(&now);
    }));
    key(VK_END);
    expectCaret(40 + widthOf(look, "Wj"), 54);
    runOnHost(&host, [&] { SetFocus(GetDlgItem(host.palette, ID_OPACITY)); });
    runOnHost(&host, [&] { SetFocus(host.canvas); });
    expectCaret(40 + widthOf(look, "Wj"), 54);
}
