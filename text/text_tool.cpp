#include "text/text_tool.h"

#include <commdlg.h>

#include <cstdlib>

#include "canvas/view/canvas_coordinates.h"
#include "image/packed_bitmap.h"
#include "session/ground/locked_block.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/kernels/text_line.h"
#include "text/text_strip.h"

namespace {

constexpr int CARET_WIDTH = 2;

// A double-byte character arrives as two messages: its first byte waits here (0: none) for the second.
char waitingLeadByte;

// textBuffer stays locked for the time of one operation. False while no line is open, and when the buffer
// cannot be locked: then the operation does not happen.
struct OpenLine {
    OpenLine() : buffer(session->textBuffer), line{(char*)buffer.bytes, &session->caretIndex, {}}
    {
        if (buffer) line.leads = textLeadBytes();
    }
    explicit operator bool() const { return (bool)buffer; }

    LockedBlock buffer;
    TextLine line;
};

bool lineIsOpen()
{
    return session->textBuffer != nullptr;
}

void invalidateStrip(HWND canvas)
{
    RECT strip = deviceRectOf(canvas, textStripRect());
    InvalidateRect(canvas, &strip, TRUE);
}

void renderLine(HWND canvas, const TextLine& line)
{
    renderTextStrip(line.buffer);
    invalidateStrip(canvas);
}

void showTextCaret(HWND canvas)
{
    if (!session->caretCreated) {
        session->caretCreated = CreateCaret(canvas, nullptr, CARET_WIDTH, textLineHeight()) != 0;
    }
    SetCaretPos(session->caretX, session->caretY);
    ShowCaret(canvas);
}

void dropTextCaret(HWND canvas)
{
    if (!session->caretCreated) return;
    HideCaret(canvas);
    DestroyCaret();
    session->caretCreated = 0;
}

// Behind the end the caret is drawn after the last character.
void computeCaretX(const TextLine& line)
{
    const int length = textLength(line);
    const int shown = session->caretIndex < length ? session->caretIndex : length;
    session->caretX = session->textOriginX + measureText(line.buffer, shown);
}

void moveCaret(HWND canvas, const TextLine& line)
{
    computeCaretX(line);
    HideCaret(canvas);
    SetCaretPos(session->caretX, session->caretY);
    ShowCaret(canvas);
}

// The terminator counts as a character, so the line ends a little before the image's edge.
bool lineFits(const TextLine& line)
{
    int imageWidth;
    if (!lockBitmapInfo(editedImage(), &imageWidth, nullptr, nullptr)) return false;
    return measureText(line.buffer, textLength(line) + 1) + session->textOriginX < imageWidth;
}

void stampLine(HWND canvas)
{
    stampTextStrip();
    invalidateStrip(canvas);
}

void startLineAt(HWND canvas, const TextLine& line, int x, int y)
{
    session->textOriginX = session->caretX = x;
    session->textOriginY = session->caretY = y;
    waitingLeadByte = 0;
    clearLine(line);
    renderLine(canvas, line);
    showTextCaret(canvas);
}

void freeLine()
{
    if (session->textBuffer) GlobalFree(session->textBuffer);
    session->textBuffer = nullptr;
    freeTextStrip();
}

int openFirstLine(HWND canvas, int x, int y)
{
    endText(canvas);
    int imageWidth;
    if (!lockBitmapInfo(editedImage(), &imageWidth, nullptr, nullptr) || !createTextStrip(imageWidth)) return 0;
    session->textBuffer = GlobalAlloc(GHND, TEXT_BUFFER_SIZE);
    const OpenLine open;
    if (!open) {
        freeLine();
        return 0;
    }
    // Typing goes to the window with the focus.
    if (GetFocus() != canvas) SetFocus(canvas);
    startLineAt(canvas, open.line, x, y - textLineHeight());
    return 1;
}

bool insideStrip(int x, int y)
{
    const RECT strip = textStripRect();
    return x >= strip.left && x <= strip.right && y >= strip.top && y <= strip.bottom;
}

// The caret goes before the character under the point. Right of the text it is left one past the end,
// where typing does not show: that is how the tool is meant to act.
void moveCaretToPoint(HWND canvas, const TextLine& line, int x)
{
    const int length = textLength(line);
    int index = 0;
    for (; index <= length; index = nextCharacter(line, index)) {
        session->caretIndex = index;
        computeCaretX(line);
        if (session->caretX >= x) break;
    }
    session->caretIndex = index > length ? index : previousCharacter(line, index);
    moveCaret(canvas, line);
}

void enterLine(HWND canvas, const TextLine& line)
{
    stampLine(canvas);
    const int next = session->textOriginY + textLineHeight();
    if (next >= bitmapHeight(editedImage())) return;  // the last line stays open, and can be stamped again
    startLineAt(canvas, line, session->textOriginX, next);
}

struct CaretKey {
    UINT key;
    void (*move)(const TextLine& line);
};

const CaretKey caretKeys[] = {
    {VK_END, moveCaretEnd}, {VK_HOME, moveCaretHome},   {VK_LEFT, moveCaretLeft},
    {VK_UP, moveCaretLeft}, {VK_RIGHT, moveCaretRight}, {VK_DOWN, moveCaretRight},
};

bool moveCaretByKey(HWND canvas, const TextLine& line, UINT key)
{
    for (const CaretKey& row : caretKeys) {
        if (row.key != key) continue;
        row.move(line);
        moveCaret(canvas, line);
        return true;
    }
    return false;
}

void editByKey(HWND canvas, const TextLine& line, UINT key)
{
    const bool changed =
        (key == VK_INSERT && lineFits(line) && insertSpace(line)) || (key == VK_DELETE && deleteAtCaret(line));
    if (!changed) return;
    moveCaret(canvas, line);
    renderLine(canvas, line);
}

// Both bytes of a double-byte character go in together, or none.
bool typeByte(const TextLine& line, char byte)
{
    const char character[] = {waitingLeadByte, byte};
    if (waitingLeadByte) {
        waitingLeadByte = 0;
        return lineFits(line) && typeCharacter(line, character, 2);
    }
    if (isLeadByte(line.leads, byte)) {
        waitingLeadByte = byte;
        return false;
    }
    return lineFits(line) && typeCharacter(line, &byte, 1);
}

// Codes below the space are no text.
bool editByCharacter(const TextLine& line, UINT character)
{
    if (character >= ' ') return typeByte(line, (char)character);
    waitingLeadByte = 0;
    return character == VK_BACK && backspace(line);
}

}  // namespace

int textClick(HWND canvas, int x, int y)
{
    if (!lineIsOpen()) return openFirstLine(canvas, x, y);
    const OpenLine open;
    if (!open) return 1;
    if (insideStrip(x, y)) {
        moveCaretToPoint(canvas, open.line, x);
    } else {
        stampLine(canvas);
        startLineAt(canvas, open.line, x, y - textLineHeight() / 2);
    }
    return 1;
}

void textKeyDown(HWND canvas, UINT key)
{
    if (lineIsOpen() && key == VK_ESCAPE) return endText(canvas);
    const OpenLine open;
    if (!open) return;
    if (key == VK_RETURN) {
        enterLine(canvas, open.line);
    } else if (!moveCaretByKey(canvas, open.line, key)) {
        editByKey(canvas, open.line, key);
    }
}

void textChar(HWND canvas, UINT character)
{
    const OpenLine open;
    if (!open || !editByCharacter(open.line, character)) return;
    moveCaret(canvas, open.line);
    renderLine(canvas, open.line);
}

void paintTextOverlay(HWND canvas, HDC dc)
{
    if (!session->textStrip || !lineIsOpen()) return;
    HideCaret(canvas);
    drawTextStrip(dc);
    if (session->caretCreated) ShowCaret(canvas);
}

void endText(HWND canvas)
{
    if (lineIsOpen()) invalidateStrip(canvas);
    dropTextCaret(canvas);
    freeLine();
    session->caretIndex = 0;
    waitingLeadByte = 0;
}

void chooseTextFont(HWND palette)
{
    endText(session->canvasWindow);
    LOGFONTA& font = session->textFont;
    font.lfHeight = (LONG)session->brushHeight;
    CHOOSEFONTA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = palette;
    dialog.lpLogFont = &font;
    dialog.rgbColors = session->paintColour;
    dialog.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_EFFECTS;
    dialog.nFontType = SCREEN_FONTTYPE;
    EnableWindow(session->hostDialog, FALSE);
    if (ChooseFontA(&dialog)) {
        session->brushHeight = (uint32_t)abs((int)font.lfHeight);
        createTextFont();  // the dialog's heights are negative, the description's (and the settings file's) are not
        session->paintColour = dialog.rgbColors;
    }
    EnableWindow(session->hostDialog, TRUE);
}
