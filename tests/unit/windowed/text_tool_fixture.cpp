#include "tests/unit/windowed/text_tool_fixture.h"

#include <cstdlib>
#include <cstring>
#include <random>

#include "image/packed_bitmap.h"
#include "session/ground/window_props.h"
#include "text/text_tool.h"

static UINT codePageOf(BYTE charSet)
{
    CHARSETINFO script = {};
    if (charSet == ANSI_CHARSET || charSet == DEFAULT_CHARSET) return GetACP();
    TranslateCharsetInfo((DWORD*)(DWORD_PTR)charSet, &script, TCI_SRCCHARSET);
    return script.ciACP;
}

void TextTool::SetUp()
{
    const char* wanted = getenv("RETOUCH_CODE_PAGE");
    ASSERT_TRUE(!wanted || (UINT)atoi(wanted) == GetACP()) << "the system's code page is " << GetACP();
    session = &record;
    LOGFONTA& font = record.textFont;
    font.lfWeight = FW_BOLD;
    font.lfQuality = PROOF_QUALITY;
    font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    strcpy(font.lfFaceName, "Arial");
    record.hostDialog = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
    canvas = CreateWindowA("STATIC", "", WS_CHILD, 0, 0, 400, 300, record.hostDialog, nullptr, nullptr, nullptr);
    record.canvasWindow = canvas;
}

void TextTool::TearDown()
{
    if (!session) return;
    endText(canvas);
    removeAllProps(record.hostDialog);
    DestroyWindow(record.hostDialog);
    if (image) GlobalFree(image);
    session = nullptr;
}

void TextTool::use(int width, int height, int lineHeight, int opacity)
{
    endText(canvas);
    if (image) GlobalFree(image);
    image = createBitmap(width, height, 24);
    setWindowProp(record.hostDialog, PROP_IMAGE, image);
    record.brushHeight = (uint32_t)lineHeight;
    record.opacity = (uint32_t)opacity;
    record.paintColour = RGB(200, 30, 90);
    model = {};
    model.width = width;
    model.height = height;
    model.image.resize((size_t)strideOf(width) * height);
    model.colour = record.paintColour;
    model.opacity = opacity;
    model.lineHeight = lineHeight;
    model.codePage = codePageOf(record.textFont.lfCharSet);
    std::mt19937 random((unsigned)(width * 31 + height));
    for (uint8_t& byte : model.image)
        byte = (uint8_t)random();
    memcpy(lockBitmapBits(image), model.image.data(), model.image.size());
    unlockBitmap(image);
}

void TextTool::click(int x, int y)
{
    EXPECT_EQ(1, textClick(canvas, x, y));
    modelClick(model, x, y);
    expectEqual();
}

void TextTool::key(UINT virtualKey)
{
    textKeyDown(canvas, virtualKey);
    modelKey(model, virtualKey);
    expectEqual();
}

void TextTool::character(UINT code)
{
    textChar(canvas, code);
    modelChar(model, code);
    expectEqual();
}

void TextTool::type(const char* text)
{
    for (; *text; ++text)
        character((uint8_t)*text);
}

std::string TextTool::line() const
{
    const std::string text = (const char*)GlobalLock(record.textBuffer);
    GlobalUnlock(record.textBuffer);
    return text;
}

void TextTool::expectEqual()
{
    ASSERT_EQ(model.open, record.textBuffer != nullptr);
    ASSERT_EQ(model.caret, record.caretIndex);
    if (!model.open) return;
    ASSERT_EQ(model.originX, record.textOriginX);
    ASSERT_EQ(model.originY, record.textOriginY);
    ASSERT_EQ(model.caretX, record.caretX);
    ASSERT_EQ(model.originY, record.caretY);
    ASSERT_EQ(1u, record.caretCreated);
    ASSERT_EQ(model.lineHeight, record.textFont.lfHeight);
    BITMAP strip = {};
    GetObjectA(record.textStrip, sizeof strip, &strip);
    ASSERT_EQ(model.width, strip.bmWidth);
    ASSERT_EQ(model.lineHeight, strip.bmHeight);
    ASSERT_EQ(1, strip.bmBitsPixel);
    const int same = memcmp(model.buffer, GlobalLock(record.textBuffer), TEXT_BUFFER_SIZE);
    GlobalUnlock(record.textBuffer);
    ASSERT_EQ(0, same);
    POINT caret;
    GetCaretPos(&caret);
    EXPECT_EQ(model.caretX, caret.x);
    EXPECT_EQ(model.originY, caret.y);
}

void TextTool::expectImage()
{
    const bool same = memcmp(model.image.data(), lockBitmapBits(image), model.image.size()) == 0;
    unlockBitmap(image);
    EXPECT_TRUE(same);
}

bool TextTool::stampChanges()
{
    const Bytes before = model.image;
    modelStamp(model);
    const bool changes = before != model.image;
    model.image = before;
    return changes;
}
