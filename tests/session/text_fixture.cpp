#include "tests/session/text_fixture.h"

#include "tests/session/screen_picture.h"

#include <algorithm>
#include <cstring>

Look defaultLook()
{
    Look look = {};
    look.font.lfHeight = 16;  // of a new tool; the font's own height counts for nothing
    look.font.lfWeight = FW_BOLD;
    look.font.lfQuality = PROOF_QUALITY;
    look.font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    look.font.lfCharSet = DEFAULT_CHARSET;  // what is typed is in the system's code page
    strcpy(look.font.lfFaceName, "Arial");
    look.colour = RGB(255, 192, 192);
    return look;
}

static void drawText(HDC dc, const std::string& text, RECT* place, UINT format)
{
    DrawTextA(dc, text.c_str(), (int)text.size(), place, format);
}

static void drawText(HDC dc, const std::wstring& text, RECT* place, UINT format)
{
    DrawTextW(dc, text.c_str(), (int)text.size(), place, format);
}

template <class String>
static int measure(const Look& look, const String& text)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = CreateFontIndirectA(&look.font);
    const HGDIOBJ old = SelectObject(dc, font);
    RECT extent = {0, 0, 0, 0};
    if (!text.empty()) drawText(dc, text, &extent, DT_CALCRECT);
    SelectObject(dc, old);
    DeleteObject(font);
    DeleteDC(dc);
    return extent.right;
}

template <class String>
static Block draw(const Look& look, const String& text, int x, int width)
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
    drawText(dc, text, &place, 0);
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

int widthOf(const Look& look, const std::string& text)
{
    return measure(look, text);
}

int widthOf(const Look& look, const std::wstring& text)
{
    return measure(look, text);
}

Block drawn(const Look& look, const std::string& text, int x, int width)
{
    return draw(look, text, x, width);
}

Block drawn(const Look& look, const std::wstring& text, int x, int width)
{
    return draw(look, text, x, width);
}

void TextSession::SetUp()
{
    SessionTest::SetUp();
    palettePos = {20, 40};
}

void TextSession::openWithText()
{
    OffsetRect(&dialogRect, 200 - dialogRect.left, 0);
    ASSERT_TRUE(open());
    before = snapshot(photo);
    ASSERT_TRUE(clickControl(&host, ID_TEXT));
    ASSERT_TRUE(movePointerOnCanvas(&host, 3, 3));
    ASSERT_TRUE(waitUntil("entering", [&] { return wasSeen(0, host.canvas, POINTER_ENTERED); }));
    ASSERT_TRUE(settle(&host));
    empty = shownBy(host.canvas);
}

void TextSession::click(int x, int y)
{
    ASSERT_TRUE(drawStroke(&host, {{x, y}}));
}

void TextSession::type(const char* text)
{
    for (; *text; ++text)
        PostMessageA(host.canvas, WM_CHAR, (uint8_t)*text, 1);
    ASSERT_TRUE(settle(&host));
}

void TextSession::key(UINT virtualKey)
{
    PostMessageA(host.canvas, WM_KEYDOWN, virtualKey, 1);
    ASSERT_TRUE(settle(&host));
}

RECT TextSession::caret() const
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(host.threadId, &info);
    return info.hwndCaret == host.canvas ? info.rcCaret : RECT{0, 0, 0, 0};
}

void TextSession::expectCaret(int x, int top)
{
    const RECT at = caret();
    EXPECT_EQ(x, at.left);
    EXPECT_EQ(top, at.top);
    EXPECT_EQ(2, at.right - at.left);
    EXPECT_EQ(look.font.lfHeight, at.bottom - at.top);
}

// Rows from `top` on take the text, up to the image's last ones that are left out.
static void lay(uint8_t* rows, const HostImage& photo, const Look& look, const Block& text, int top, int opacity,
                int rowsLeftOut)
{
    const size_t stride = (size_t)reference::strideOf(photo.width);
    const int channels[] = {GetBValue(look.colour), GetGValue(look.colour), GetRValue(look.colour)};
    for (int y = std::max(0, top); y < std::min<int>(top + look.font.lfHeight, photo.height - rowsLeftOut); ++y)
        for (int column = 0; column < photo.width; ++column) {
            if (!text[(size_t)((y - top) * photo.width + column)]) continue;
            uint8_t* pixel = rows + stride * (size_t)(photo.height - 1 - y) + 3 * (size_t)column;
            for (int c = 0; c < 3; ++c)
                pixel[c] = (uint8_t)((pixel[c] * (100 - opacity) + channels[c] * opacity) / 100);
        }
}

void TextSession::stamp(Block& block, const Block& text, int top, int opacity)
{
    lay(block.data() + sizeof(BITMAPINFOHEADER), photo, look, text, top, opacity, 1);
}

void TextSession::stamp(Block& block, const std::string& text, int x, int top, int opacity)
{
    stamp(block, drawn(look, text, x, photo.width), top, opacity);
}

void TextSession::expectLineOnScreen(const Block& text, int top)
{
    ASSERT_EQ(photo.width, empty.width) << "at the image's own size";
    const Block block = snapshot(photo);
    Block expected(block.begin() + sizeof(BITMAPINFOHEADER), block.end());
    lay(expected.data(), photo, look, text, top, 100, 0);
    expectOnScreen(expected);
}

void TextSession::expectLineOnScreen(const std::string& text, int x, int top)
{
    expectLineOnScreen(drawn(look, text, x, photo.width), top);
}

void TextSession::expectOnScreen(const Block& expected)
{
    const reference::StoredPicture shown = shownBy(host.canvas);
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

void TextSession::expectNothingLeft()
{
    EXPECT_TRUE(before == snapshot(photo)) << "nothing may be stamped";
    const RECT none = caret();
    EXPECT_TRUE(IsRectEmpty(&none)) << "the caret is gone";
    expectOnScreen(empty.bytes);
}
