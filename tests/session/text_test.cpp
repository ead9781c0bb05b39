// The text tool in a running session: what the screen shows while a line is typed, what ends a line, and
// what stamping leaves in the image. Text is held against the test's own drawing of it.
#include <windows.h>

#include <commdlg.h>
#include <dlgs.h>

#include <algorithm>
#include <cstring>

#include "tests/session/screen_part.h"
#include "tests/session/session_fixture.h"

enum TextId { ID_TEXT_BUTTON = 123, ID_CONTRAST = 114, ID_RUBBER_TOOL = 118, ID_COLORS_TOOL = 124, ID_UNDO_STEP = 190 };

typedef std::vector<uint8_t> Block;

struct Look {
    LOGFONTA font;
    COLORREF colour;
};

static Look defaultLook()
{
    Look look = {};
    look.font.lfHeight = 16; // of a new tool; the font's own height counts for nothing
    look.font.lfWeight = FW_BOLD;
    look.font.lfQuality = PROOF_QUALITY;
    look.font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    look.font.lfCharSet = DEFAULT_CHARSET; // what is typed is in the system's code page
    strcpy(look.font.lfFaceName, "Arial");
    look.colour = RGB(255, 192, 192);
    return look;
}

static int widthOf(const Look& look, const std::string& text)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = CreateFontIndirectA(&look.font);
    const HGDIOBJ old = SelectObject(dc, font);
    RECT extent = {0, 0, 0, 0};
    if (!text.empty()) DrawTextA(dc, text.c_str(), (int)text.size(), &extent, DT_CALCRECT);
    SelectObject(dc, old);
    DeleteObject(font);
    DeleteDC(dc);
    return extent.right;
}

// One byte a pixel, 1 where there is text; as wide as the image and one line high.
static Block drawn(const Look& look, const std::string& text, int x, int width)
{
    const int height = look.font.lfHeight, stride = (width + 15) / 16 * 2;
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = CreateFontIndirectA(&look.font);
    const HBITMAP bitmap = CreateBitmap(width, height, 1, 1, nullptr);
    const HGDIOBJ oldFont = SelectObject(dc, font), oldBitmap = SelectObject(dc, bitmap);
    PatBlt(dc, 0, 0, width, height, BLACKNESS);
    SetTextColor(dc, RGB(255, 255, 255));
    SetBkMode(dc, TRANSPARENT);
    RECT place = {x, 0, width, height};
    DrawTextA(dc, text.c_str(), -1, &place, 0);
    GdiFlush();
    Block bits((size_t)stride * (size_t)height), pixels((size_t)width * (size_t)height);
    GetBitmapBits(bitmap, (LONG)bits.size(), bits.data());
    for (int i = 0; i < width * height; ++i)
        pixels[(size_t)i] = bits[(size_t)(i / width * stride + i % width / 8)] >> (7 - i % width % 8) & 1;
    SelectObject(dc, oldFont);
    SelectObject(dc, oldBitmap);
    DeleteObject(font);
    DeleteObject(bitmap);
    DeleteDC(dc);
    return pixels;
}

struct Text : SessionTest {
    Look look = defaultLook();
    Block before;           // the host's image when the session opened
    reference::Image empty; // what the canvas shows without a line

    void SetUp() override
    {
        SessionTest::SetUp();
        palettePos = {20, 40};
    }

    // Host window and palette side by side: a click on one would otherwise bring it over the other.
    void openWithText()
    {
        OffsetRect(&dialogRect, 200 - dialogRect.left, 0);
        ASSERT_TRUE(open());
        before = snapshot(photo);
        ASSERT_TRUE(clickControl(&host, ID_TEXT_BUTTON));
        ASSERT_TRUE(movePointerOnCanvas(&host, 3, 3));
        ASSERT_TRUE(waitUntil("entering", [&] { return wasSeen(0, host.canvas, POINTER_ENTERED); }));
        ASSERT_TRUE(settle(&host));
        empty = shownBy(host.canvas);
    }

    void click(int x, int y) { ASSERT_TRUE(drawStroke(&host, {{x, y}})); }

    void type(const char* text)
    {
        for (; *text; ++text)
            PostMessageA(host.canvas, WM_CHAR, (uint8_t)*text, 1);
        ASSERT_TRUE(settle(&host));
    }

    void key(UINT virtualKey)
    {
        PostMessageA(host.canvas, WM_KEYDOWN, virtualKey, 1);
        ASSERT_TRUE(settle(&host));
    }

    RECT caret() const
    {
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(host.threadId, &info);
        return info.hwndCaret == host.canvas ? info.rcCaret : RECT{0, 0, 0, 0};
    }

    void expectCaret(int x, int top)
    {
        const RECT at = caret();
        EXPECT_EQ(x, at.left);
        EXPECT_EQ(top, at.top);
        EXPECT_EQ(2, at.right - at.left);
        EXPECT_EQ(look.font.lfHeight, at.bottom - at.top);
    }

    // Lays the text over rows from `top` on, all but the image's last one when it is stamped.
    void layText(Block& block, size_t start, const std::string& text, int x, int top, int opacity, int rowsLeftOut)
    {
        const Block mask = drawn(look, text, x, photo.width);
        const size_t stride = (size_t)reference::strideOf(photo.width);
        const int channels[] = {GetBValue(look.colour), GetGValue(look.colour), GetRValue(look.colour)};
        for (int y = std::max(0, top); y < std::min<int>(top + look.font.lfHeight, photo.height - rowsLeftOut); ++y)
            for (int column = 0; column < photo.width; ++column) {
                if (!mask[(size_t)((y - top) * photo.width + column)]) continue;
                uint8_t* pixel = &block[start + stride * (size_t)(photo.height - 1 - y) + 3 * (size_t)column];
                for (int c = 0; c < 3; ++c)
                    pixel[c] = (uint8_t)((pixel[c] * (100 - opacity) + channels[c] * opacity) / 100);
            }
    }

    void stamp(Block& block, const std::string& text, int x, int top, int opacity = 100)
    {
        layText(block, sizeof(BITMAPINFOHEADER), text, x, top, opacity, 1);
    }

    // The canvas, less the blinking caret, shows the image with the line over it.
    void expectLineOnScreen(const std::string& text, int x, int top)
    {
        ASSERT_EQ(photo.width, empty.width) << "at the image's own size";
        const Block block = snapshot(photo);
        Block expected(block.begin() + sizeof(BITMAPINFOHEADER), block.end());
        layText(expected, 0, text, x, top, 100, 0);
        expectOnScreen(expected);
    }

    void expectOnScreen(const Block& expected)
    {
        const reference::Image shown = shownBy(host.canvas);
        const RECT skipped = caret();
        const size_t stride = (size_t)reference::strideOf(shown.width);
        for (int y = 0; y < shown.height; ++y)
            for (int x = 0; x < shown.width; ++x) {
                if (PtInRect(&skipped, {x, y})) continue;
                const size_t at = stride * (size_t)(shown.height - 1 - y) + 3 * (size_t)x;
                if (!memcmp(&shown.bytes[at], &expected[at], 3)) continue;
                ADD_FAILURE() << "the canvas differs at " << x << ", " << y;
                savePicture("canvas");
                return;
            }
    }

    void expectNothingLeft()
    {
        EXPECT_TRUE(before == snapshot(photo)) << "nothing may be stamped";
        const RECT none = caret();
        EXPECT_TRUE(IsRectEmpty(&none)) << "the caret is gone";
        expectOnScreen(empty.bytes);
    }

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
    expectLineOnScreen("half", 30, 44); // shown in full
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
    click(290, 150); // right of the text, in its line: the caret goes past the end
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
            expectCaret(30, 195); // one more line begins above the bottom: that is the last one
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
        empty = shownBy(host.canvas); // with the strip repainted on its own, as it will be
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
    for (int id : {(int)ID_COLORS_TOOL, (int)ID_UNDO_STEP, (int)ID_CIRCLE, (int)ID_FULL}) {
        SCOPED_TRACE(id);
        click(40, 70);
        type("Gone");
        ASSERT_TRUE(clickControl(&host, id));
        expectNothingLeft();
        ASSERT_TRUE(id != ID_COLORS_TOOL || clickControl(&host, ID_TEXT_BUTTON));
    }
    click(40, 70);
    type("Gone");
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
    ASSERT_TRUE(clickControl(&host, ID_TEXT_BUTTON));
    ASSERT_TRUE(waitUntil("the font dialog to open", [&] { return fontDialog(host) != nullptr; }));
    EXPECT_FALSE(IsWindowEnabled(host.dialog));
    ASSERT_TRUE(closeFontDialog(&host, IDCANCEL));
    EXPECT_TRUE(IsWindowEnabled(host.dialog));
    expectNothingLeft();
    click(40, 70);
    expectCaret(40, 54); // cancelled: the height is the old one
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
    ASSERT_TRUE(clickControl(&host, ID_TEXT_BUTTON));
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

static void addInput(std::vector<INPUT>* inputs, WORD key, WORD scan, DWORD flags)
{
    for (DWORD up : {0ul, (unsigned long)KEYEVENTF_KEYUP}) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.wScan = scan;
        input.ki.dwFlags = flags | up;
        inputs->push_back(input);
    }
}

// Through the keyboard: a character of the system's code page arrives as its byte there.
TEST_F(Text, KeyboardTypesCharactersOfTheSystemsCodePage)
{
    openWithText();
    click(40, 70);
    runOnHost(&host, [&] { SetForegroundWindow(host.dialog), SetFocus(host.canvas); });
    std::string bytes;
    std::vector<INPUT> inputs;
    for (const wchar_t character : std::wstring(L"a\u00E9\u00DF\u20AC\u0416")) {
        char byte[4] = "";
        BOOL replaced = FALSE;
        if (WideCharToMultiByte(CP_ACP, 0, &character, 1, byte, 4, nullptr, &replaced) != 1 || replaced) continue;
        bytes += byte[0];
        addInput(&inputs, 0, (WORD)character, KEYEVENTF_UNICODE);
    }
    ASSERT_GE(bytes.size(), 2u) << "the system's code page knows at least one of the letters besides a";
    SendInput((UINT)inputs.size(), inputs.data(), sizeof inputs[0]);
    const size_t typed = bytes.size();
    ASSERT_TRUE(waitUntil("the characters", [&] { return countSeen(0, host.canvas, WM_CHAR) >= (int)typed; }));
    ASSERT_TRUE(settle(&host));
    expectLineOnScreen(bytes, 40, 54);
    inputs.clear();
    addInput(&inputs, VK_LEFT, 0, 0);
    addInput(&inputs, VK_DELETE, 0, 0);
    addInput(&inputs, VK_RETURN, 0, 0);
    SendInput((UINT)inputs.size(), inputs.data(), sizeof inputs[0]);
    ASSERT_TRUE(waitUntil("the keys", [&] { return countSeen(0, host.canvas, WM_KEYUP) >= 3; }));
    ASSERT_TRUE(settle(&host));
    bytes.pop_back();
    Block stamped = before;
    stamp(stamped, bytes, 40, 54);
    EXPECT_TRUE(stamped == snapshot(photo));
    expectCaret(40, 70);
    closeAndCheck(before);
}
