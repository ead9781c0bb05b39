// The text tool's procedures over a hidden window, held against a model of the line: its buffer, its caret
// and its origin after every click, key and character, and the image after every stamp.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "image/packed_bitmap.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/kernels/text_line.h"
#include "text/text_strip.h"
#include "text/text_tool.h"
#include "tests/unit/windowed/text_tool_fixture.h"

static const UINT keys[] = {VK_END, VK_HOME, VK_LEFT, VK_UP, VK_RIGHT, VK_DOWN, VK_INSERT, VK_DELETE, VK_F5, VK_SHIFT};

static UINT randomCharacter(std::mt19937& random)
{
    const unsigned kind = random() % 12;
    if (kind == 0) return VK_BACK;
    if (kind == 1) return random() % 32;  // tab, carriage return and other codes that are no text
    if (kind == 2) return '&';
    return 32 + random() % 224;
}

static void randomStep(TextTool& test, std::mt19937& random)
{
    const unsigned kind = random() % 100;
    const TextModel& model = test.model;
    if (!model.open || kind < 4) {
        test.click((int)(random() % (unsigned)model.width), (int)(random() % (unsigned)model.height));
    } else if (kind < 8) {
        test.click((int)(random() % (unsigned)model.width), model.originY + (int)(random() % 20));
    } else if (kind < 9) {
        test.key(VK_ESCAPE);
    } else if (kind < 11) {
        test.key(VK_RETURN);
    } else if (kind < 35) {
        test.key(keys[random() % (sizeof keys / sizeof *keys)]);
    } else {
        test.character(randomCharacter(random));
    }
}

TEST_F(TextTool, FollowsTheModelThroughRandomSteps)
{
    std::mt19937 random(71);
    for (const SIZE size : {SIZE{900, 70}, SIZE{120, 90}, SIZE{37, 200}}) {
        use(size.cx, size.cy, 20, size.cx == 120 ? 50 : 100);
        for (int step = 0; step < 1500 && !HasFatalFailure(); ++step) {
            SCOPED_TRACE(step);
            randomStep(*this, random);
        }
        expectImage();
    }
}

TEST_F(TextTool, FollowsTheModelWithDoubleByteCharacters)
{
    record.textFont.lfCharSet = SHIFTJIS_CHARSET;
    std::mt19937 random(932);
    for (const SIZE size : {SIZE{900, 70}, SIZE{120, 90}}) {
        use(size.cx, size.cy, 20, size.cx == 120 ? 50 : 100);
        ASSERT_EQ(932u, model.codePage);
        for (int step = 0; step < 1500 && !HasFatalFailure(); ++step) {
            SCOPED_TRACE(step);
            randomStep(*this, random);
        }
        expectImage();
    }
}

// The two bytes come as two messages, and until the second one has come nothing happens.
TEST_F(TextTool, DoubleByteCharactersGoInWholeOrNotAtAll)
{
    record.textFont.lfCharSet = SHIFTJIS_CHARSET;
    use(100, 60, 20);
    click(5, 40);
    textChar(canvas, 0x82);
    EXPECT_EQ("", line());
    EXPECT_EQ(0, record.caretIndex);
    textChar(canvas, 0xA0);
    EXPECT_EQ("\x82\xA0", line());
    EXPECT_EQ(2, record.caretIndex);
    textChar(canvas, 0x82);
    textChar(canvas, VK_BACK);  // takes the first byte's place, and the whole character before it
    EXPECT_EQ("", line());
    textChar(canvas, 'a');
    EXPECT_EQ("a", line()) << "the first byte does not wait on";
    for (int i = 0; i < 40; ++i) {  // to the right edge and on
        textChar(canvas, 0x82);
        textChar(canvas, (UINT)(0xA0 + i));
    }
    EXPECT_EQ(1u, line().size() % 2);
    EXPECT_GT(line().size(), 5u);
    textChar(canvas, 0x82);
    textClick(canvas, 5, 10);  // a new line: the byte is forgotten
    textChar(canvas, 'b');
    EXPECT_EQ("b", line());
    textChar(canvas, 0x82);
    endText(canvas);
    textClick(canvas, 5, 40);
    textChar(canvas, 'c');
    EXPECT_EQ("c", line());
}

TEST_F(TextTool, ClicksPutTheCaretBetweenWholeCharacters)
{
    record.textFont.lfCharSet = SHIFTJIS_CHARSET;
    use(300, 60, 20);
    click(5, 40);
    type("\x82\xA0i\x83\x83\x83\x5C");
    bool stops[9] = {};
    for (int x = 0; x < 120; ++x) {
        click(x, 30);
        ASSERT_LE(record.caretIndex, 8);
        stops[record.caretIndex] = true;
    }
    const bool wanted[] = {true, false, true, true, false, true, false, false, true};  // past the end, too
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(wanted[i], stops[i]) << i;
}

TEST_F(TextTool, OpensWithItsBottomAtTheClickAndThenCentred)
{
    use(200, 100, 24);
    click(30, 10);
    EXPECT_EQ(-14, record.textOriginY);
    click(50, 60);
    EXPECT_EQ(48, record.textOriginY);
    EXPECT_EQ(50, record.textOriginX);
}

TEST_F(TextTool, TypingWritesOver)
{
    use(300, 60, 20);
    click(5, 40);
    type("abc");
    key(VK_HOME);
    type("X");
    EXPECT_EQ("Xbc", line());
    key(VK_HOME);
    character(VK_BACK);
    EXPECT_EQ("bc", line());
}

// Right of the text the caret stays one past the end: what is typed there does not show, and nothing is
// written behind the buffer.
TEST_F(TextTool, ClickRightOfTheTextLeavesTheCaretPastTheEnd)
{
    use(300, 60, 20);
    click(5, 40);
    type("ab");
    click(290, 30);
    EXPECT_EQ(3, record.caretIndex);
    type("hidden");
    EXPECT_EQ("ab", line());
}

TEST_F(TextTool, NothingIsWrittenBehindTheBuffer)
{
    use(300, 60, 20);
    click(5, 40);
    click(290, 30);  // past the end of an empty line, which always fits
    char* buffer = (char*)GlobalLock(record.textBuffer);
    const size_t size = GlobalSize(record.textBuffer);
    ASSERT_EQ((size_t)TEXT_BUFFER_SIZE, size);
    for (int i = 0; i < 20; ++i)
        textChar(canvas, 'x');
    record.caretIndex = TEXT_BUFFER_SIZE - 20;  // as after so many more characters
    for (int i = 0; i < 60; ++i)
        textChar(canvas, 'x');
    EXPECT_LT(record.caretIndex, TEXT_BUFFER_SIZE);
    EXPECT_EQ(0, buffer[TEXT_BUFFER_SIZE - 1]);
    GlobalUnlock(record.textBuffer);
    key(VK_ESCAPE);
}

// The terminator's width counts: what fits is decided before each character, against the right edge.
TEST_F(TextTool, TypingStopsAtTheRightEdge)
{
    for (int x = 60; x < 100; ++x) {
        use(100, 60, 20);
        click(x, 40);
        type("iWiWiWiWiWiWiWiWiW");
        const int length = lengthOf(model);
        EXPECT_LT(length, 10);
        EXPECT_GE(x + ownWidth(model, length + 1), 100);
        key(VK_HOME);
        key(VK_INSERT);  // has to fit too
        EXPECT_EQ(length, lengthOf(model));
        type("Z");  // and so does a character typed over another
        EXPECT_EQ(std::string::npos, line().find('Z'));
    }
}

TEST_F(TextTool, StampEqualsTheSystemsRenderingAtEveryBorder)
{
    static const POINT places[] = {{0, 40}, {1, 40},  {95, 40}, {60, 40}, {10, 3},
                                   {10, 0}, {10, 89}, {10, 79}, {99, 89}};
    for (int opacity : {100, 50, 49, 16}) {
        for (int lineHeight : {1, 7, 20, 48, 80}) {
            for (const POINT& place : places) {
                SCOPED_TRACE(testing::Message() << opacity << " " << lineHeight << " " << place.x << " " << place.y);
                use(100, 90, lineHeight, opacity);
                click(place.x, place.y);
                type("Wj&g\xC4\xFC\xDF");
                key(VK_RETURN);
                expectImage();
            }
        }
    }
}

// Where not even the terminator fits nothing can be typed; in a little more room a cut letter is stamped.
TEST_F(TextTool, StampsInImagesNarrowerThanALetter)
{
    int cutLetters = 0;
    for (int width = 1; width < 100; ++width) {  // narrow in some fonts: a W of half its height
        use(width, 110, 100);
        click(0, 100);
        type("WW");
        if (lengthOf(model) == 1 && ownWidth(model, 1) > width && stampChanges()) ++cutLetters;
        key(VK_RETURN);
        expectImage();
    }
    EXPECT_GT(cutLetters, 3);
    use(60, 1, 20);  // of a single row nothing is stamped: it is the last one
    click(0, 0);
    type("W");
    EXPECT_FALSE(stampChanges());
    key(VK_RETURN);
    expectImage();
}

TEST_F(TextTool, EnterOpensTheNextLineAndStampsTheLastOneAgain)
{
    use(200, 50, 20, 50);
    click(10, 22);
    type("one");
    EXPECT_TRUE(stampChanges());
    key(VK_RETURN);
    expectImage();
    EXPECT_EQ(22, record.textOriginY);
    EXPECT_EQ("", line());
    type("two");
    key(VK_RETURN);
    EXPECT_EQ(42, record.textOriginY);
    type("end");
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(stampChanges());  // at half opacity each one shows
        key(VK_RETURN);
        EXPECT_EQ("end", line());
        EXPECT_EQ(42, record.textOriginY);
        expectImage();
    }
}

TEST_F(TextTool, ClickElsewhereStamps)
{
    use(200, 100, 20);
    click(10, 30);
    type("stamped");
    EXPECT_TRUE(stampChanges());
    click(100, 80);
    expectImage();
    EXPECT_EQ(70, record.textOriginY);
}

TEST_F(TextTool, EscapeAndEndStampNothing)
{
    use(200, 100, 20);
    click(10, 30);
    type("gone");
    key(VK_ESCAPE);
    expectImage();
    click(10, 30);
    type("gone");
    endText(canvas);
    expectImage();
    EXPECT_EQ(nullptr, record.textBuffer);
    EXPECT_EQ(nullptr, record.textStrip);
    EXPECT_EQ(nullptr, record.textFontHandle);
    EXPECT_EQ(0u, record.caretCreated);
    EXPECT_EQ(0, record.caretIndex);
}

TEST_F(TextTool, NothingHappensWithoutALine)
{
    use(200, 100, 20);
    for (UINT key : keys)
        textKeyDown(canvas, key);
    textKeyDown(canvas, VK_RETURN);
    textKeyDown(canvas, VK_ESCAPE);
    for (UINT code = 0; code < 256; ++code)
        textChar(canvas, code);
    EXPECT_EQ(nullptr, record.textBuffer);
    EXPECT_EQ(nullptr, record.textStrip);
    EXPECT_EQ(0u, record.caretCreated);
    expectImage();
}

// Of an image that is not 24-bit a line can be typed over, and the pixels are left alone.
TEST_F(TextTool, ImagesWithPalettesAreLeftAlone)
{
    use(64, 40, 16);
    GlobalFree(image);
    image = createBitmap(64, 40, 8);
    setWindowProp(record.hostDialog, PROP_IMAGE, image);
    const size_t size = GlobalSize(image);
    const Bytes before((const uint8_t*)GlobalLock(image), (const uint8_t*)GlobalLock(image) + size);
    textClick(canvas, 4, 30);
    textChar(canvas, 'W');
    EXPECT_EQ("W", line());
    textKeyDown(canvas, VK_RETURN);
    textChar(canvas, 'j');
    textClick(canvas, 4, 10);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), (const uint8_t*)GlobalLock(image)));
    while (GlobalUnlock(image)) {
    }
}

// Text pixels take the colour, the others stay; the device context comes back as it was.
TEST_F(TextTool, OverlayLaysTheColourOverWhatIsThere)
{
    for (const POINT at : {POINT{3, 30}, POINT{60, 5}, POINT{0, 47}}) {
        use(100, 40, 20);
        click(at.x, at.y);
        type("Wj");
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof info.bmiHeader, 100, 40, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        const HDC dc = CreateCompatibleDC(nullptr);
        const HBITMAP screen = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        const HGDIOBJ old = SelectObject(dc, screen);
        const size_t size = (size_t)strideOf(100) * 40;
        memcpy(bits, model.image.data(), size);
        SetStretchBltMode(dc, HALFTONE);
        SetTextColor(dc, RGB(1, 2, 3));
        SetBkColor(dc, RGB(4, 5, 6));
        paintTextOverlay(canvas, dc);
        GdiFlush();
        Bytes wanted = model.image;
        const Bytes text = ownRendering(model, model.buffer);
        for (int y = std::max(0, model.originY); y < std::min(40, model.originY + 20); ++y)
            for (int x = 0; x < 100; ++x)
                if (text[(size_t)(y - model.originY) * 100 + x])
                    for (int c = 0; c < 3; ++c)
                        wanted[(size_t)strideOf(100) * (39 - y) + 3 * x + c] =
                            (uint8_t)(model.colour >> 8 * (2 - c));  // a COLORREF has red in its low byte
        EXPECT_NE(wanted, model.image);
        EXPECT_EQ(0, memcmp(wanted.data(), bits, size));
        EXPECT_EQ(HALFTONE, GetStretchBltMode(dc));
        EXPECT_EQ(RGB(1, 2, 3), GetTextColor(dc));
        EXPECT_EQ(RGB(4, 5, 6), GetBkColor(dc));
        memcpy(bits, model.image.data(), size);
        endText(canvas);
        paintTextOverlay(canvas, dc);  // no line: nothing
        GdiFlush();
        EXPECT_EQ(0, memcmp(model.image.data(), bits, size));
        SelectObject(dc, old);
        DeleteObject(screen);
        DeleteDC(dc);
    }
}

// A byte above 127 is the character that the code page has there: the system's, unless the font has been chosen for
// another script.
TEST_F(TextTool, BytesAreCharactersOfTheFontsCodePage)
{
    struct Script {
        BYTE charSet;
        UINT codePage;
    };
    // The first is the one that a session starts with.
    for (const Script script :
         {Script{ANSI_CHARSET, CP_ACP}, Script{DEFAULT_CHARSET, CP_ACP}, Script{RUSSIAN_CHARSET, 1251},
          Script{GREEK_CHARSET, 1253}, Script{SHIFTJIS_CHARSET, 932}}) {
        record.textFont.lfCharSet = script.charSet;
        use(400, 40, 24);
        click(4, 32);
        type("\xC0\xE9\xF1\xFB\xC6");
        WCHAR wide[16];
        MultiByteToWideChar(script.codePage, 0, line().c_str(), -1, wide, 16);
        const OwnContext context = ownContext(24);
        RECT extent = {0, 0, 0, 0};
        DrawTextW(context.dc, wide, -1, &extent, DT_CALCRECT);
        release(context);
        EXPECT_EQ(4 + extent.right, record.caretX) << script.codePage;
        key(VK_RETURN);
        expectImage();
    }
}

// Only seen on systems with another code page: Cyrillic would come out as accented letters there.
TEST_F(TextTool, FontWithoutAChosenScriptTakesTheSystemsOne)
{
    use(100, 40, 16);
    click(4, 32);
    LOGFONTA made = {};
    GetObjectA(record.textFontHandle, sizeof made, &made);
    EXPECT_EQ(DEFAULT_CHARSET, made.lfCharSet);
    EXPECT_EQ(ANSI_CHARSET, record.textFont.lfCharSet) << "the description, and so the settings file, stays";
}
