#include "tests/unit/windowed/text_model.h"

#include <algorithm>
#include <cstring>

#include "session/ground/session_record.h"

int strideOf(int width)
{
    return (width * 3 + 3) / 4 * 4;
}

OwnContext ownContext(int height)
{
    LOGFONTA description = session->textFont;
    description.lfHeight = height;
    if (description.lfCharSet == ANSI_CHARSET) description.lfCharSet = DEFAULT_CHARSET;  // the system's script
    OwnContext context = {CreateCompatibleDC(nullptr), CreateFontIndirectA(&description), nullptr};
    context.oldFont = SelectObject(context.dc, context.font);
    return context;
}

void release(const OwnContext& context)
{
    SelectObject(context.dc, context.oldFont);
    DeleteObject(context.font);
    DeleteDC(context.dc);
}

int ownWidth(const TextModel& model, int count)
{
    if (count == 0) return 0;
    const OwnContext context = ownContext(model.lineHeight);
    RECT extent = {0, 0, 0, 0};
    DrawTextA(context.dc, model.buffer, count, &extent, DT_CALCRECT);
    release(context);
    return extent.right;
}

Bytes ownRendering(const TextModel& model, const char* text)
{
    const OwnContext context = ownContext(model.lineHeight);
    const HBITMAP bitmap = CreateBitmap(model.width, model.lineHeight, 1, 1, nullptr);
    const HGDIOBJ old = SelectObject(context.dc, bitmap);
    PatBlt(context.dc, 0, 0, model.width, model.lineHeight, BLACKNESS);
    SetTextColor(context.dc, RGB(255, 255, 255));
    SetBkMode(context.dc, TRANSPARENT);
    RECT place = {model.originX, 0, model.width, model.lineHeight};
    DrawTextA(context.dc, text, -1, &place, 0);
    GdiFlush();
    const int stride = (model.width + 15) / 16 * 2;
    Bytes bits((size_t)stride * model.lineHeight);
    GetBitmapBits(bitmap, (LONG)bits.size(), bits.data());
    SelectObject(context.dc, old);
    DeleteObject(bitmap);
    release(context);

    Bytes pixels((size_t)model.width * model.lineHeight);
    for (int y = 0; y < model.lineHeight; ++y)
        for (int x = 0; x < model.width; ++x)
            pixels[(size_t)y * model.width + x] = bits[(size_t)y * stride + x / 8] >> (7 - x % 8) & 1;
    return pixels;
}

int lengthOf(const TextModel& model)
{
    return (int)strlen(model.buffer);
}

void modelStamp(TextModel& model)
{
    const Bytes text = ownRendering(model, model.buffer);
    const int channels[] = {GetBValue(model.colour), GetGValue(model.colour), GetRValue(model.colour)};
    for (int y = std::max(0, model.originY); y < std::min(model.originY + model.lineHeight, model.height - 1); ++y)
        for (int x = 0; x < model.width; ++x) {
            if (!text[(size_t)(y - model.originY) * model.width + x]) continue;
            uint8_t* pixel = &model.image[(size_t)strideOf(model.width) * (model.height - 1 - y) + 3 * x];
            for (int c = 0; c < 3; ++c)
                pixel[c] = (uint8_t)((pixel[c] * (100 - model.opacity) + channels[c] * model.opacity) / 100);
        }
}

// The system's own stepping from one character to the next and back.
static int nextOf(const TextModel& model, int index)
{
    const char* here = model.buffer + index;
    return *here ? (int)(CharNextExA((WORD)model.codePage, here, 0) - model.buffer) : index + 1;
}

static int previousOf(const TextModel& model, int index)
{
    if (index > lengthOf(model)) return index - 1;
    return (int)(CharPrevExA((WORD)model.codePage, model.buffer, model.buffer + index, 0) - model.buffer);
}

static void modelStart(TextModel& model, int x, int y)
{
    model.lead = 0;
    model.open = true;
    model.originX = model.caretX = x;
    model.originY = y;
    memset(model.buffer, 0, sizeof model.buffer);
    model.caret = 0;
}

static void modelCaretX(TextModel& model)
{
    model.caretX = model.originX + ownWidth(model, std::min(model.caret, lengthOf(model)));
}

void modelClick(TextModel& model, int x, int y)
{
    if (!model.open) return modelStart(model, x, y - model.lineHeight);
    if (x < 0 || x > model.width || y < model.originY || y > model.originY + model.lineHeight) {
        modelStamp(model);
        return modelStart(model, x, y - model.lineHeight / 2);
    }
    const int length = lengthOf(model);
    for (model.caret = 0; model.caret <= length; model.caret = nextOf(model, model.caret)) {
        modelCaretX(model);
        if (model.caretX < x) continue;
        model.caret = previousOf(model, model.caret);
        return modelCaretX(model);
    }
    modelCaretX(model);  // one past the end; drawn at it
}

static bool modelFits(const TextModel& model)
{
    return ownWidth(model, lengthOf(model) + 1) + model.originX < model.width;
}

static void modelEnter(TextModel& model)
{
    modelStamp(model);
    if (model.originY + model.lineHeight < model.height)
        modelStart(model, model.originX, model.originY + model.lineHeight);
}

static void modelRemove(TextModel& model)
{
    std::string text = model.buffer;
    text.erase((size_t)model.caret, (size_t)(nextOf(model, model.caret) - model.caret));
    memcpy(model.buffer, text.c_str(), text.size() + 1);
}

void modelKey(TextModel& model, UINT key)
{
    if (!model.open) return;
    const int length = lengthOf(model);
    if (key == VK_ESCAPE) {
        model.open = false;
        model.caret = model.lead = 0;
        return;
    }
    if (key == VK_RETURN) return modelEnter(model);
    if (key == VK_HOME) model.caret = 0;
    if (key == VK_END) model.caret = length;
    if ((key == VK_LEFT || key == VK_UP) && model.caret > 0) model.caret = previousOf(model, model.caret);
    if ((key == VK_RIGHT || key == VK_DOWN) && model.caret < length) model.caret = nextOf(model, model.caret);
    if (key == VK_INSERT && length && model.caret < length && modelFits(model)) {
        std::string text = model.buffer;
        text.insert((size_t)model.caret, " ");
        memcpy(model.buffer, text.c_str(), text.size() + 1);
    }
    if (key == VK_DELETE && model.caret < length) modelRemove(model);
    modelCaretX(model);
}

static void modelWrite(TextModel& model, const std::string& character)
{
    std::string text = model.buffer;
    if (model.caret >= lengthOf(model)) {
        const bool shown = model.caret == lengthOf(model);
        memcpy(model.buffer + model.caret, character.c_str(), character.size() + shown);
    } else {
        text.replace((size_t)model.caret, (size_t)(nextOf(model, model.caret) - model.caret), character);
        memcpy(model.buffer, text.c_str(), text.size() + 1);
    }
    model.caret += (int)character.size();
}

void modelChar(TextModel& model, UINT code)
{
    if (!model.open) return;
    const int length = lengthOf(model);
    if (code < 32) {
        model.lead = 0;
        if (code != VK_BACK || !length) return;
        if (model.caret > 0) model.caret = previousOf(model, model.caret);
        if (model.caret < length) modelRemove(model);
        return modelCaretX(model);
    }
    std::string character(1, (char)code);
    if (model.lead) {
        character.insert(0, 1, model.lead);
        model.lead = 0;
    } else if (IsDBCSLeadByteEx(model.codePage, (BYTE)code)) {
        model.lead = (char)code;
        return;
    }
    if (!modelFits(model)) return;
    modelWrite(model, character);
    modelCaretX(model);
}
