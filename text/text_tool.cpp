#include "text/text_tool.h"

#include "canvas/view/canvas_coordinates.h"
#include "image/packed_bitmap.h"
#include "session/ground/locked_block.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "text/kernels/text_line.h"
#include "text/text_caret.h"
#include "text/text_strip.h"

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

static bool lineIsOpen()
{
    return session->textBuffer != nullptr;
}

static void invalidateStrip(HWND canvas)
{
    RECT strip = deviceRectOf(canvas, textStripRect());
    InvalidateRect(canvas, &strip, TRUE);
}

static void renderLine(HWND canvas, const TextLine& line)
{
    renderTextStrip(line.buffer);
    invalidateStrip(canvas);
}

// Behind the end the caret is drawn after the last character.
static void computeCaretX(const TextLine& line)
{
    const int length = textLength(line);
    const int width = measureText(line.buffer, session->caretIndex < length ? session->caretIndex : length);
    if (width >= 0) session->caretX = session->textOriginX + width;
}

static void moveCaret(HWND canvas, const TextLine& line)
{
    computeCaretX(line);
    if (!session->caretCreated) return;
    HideCaret(canvas);
    setTextCaret(canvas);
    ShowCaret(canvas);
}

// The terminator counts as a character, so the line ends a little before the image's edge.
static bool lineFits(const TextLine& line)
{
    int imageWidth;
    if (!lockBitmapInfo(editedImage(), &imageWidth, nullptr, nullptr)) return false;
    const int width = measureText(line.buffer, textLength(line) + 1);
    return width >= 0 && width + session->textOriginX < imageWidth;
}

// The strip is drawn anew first: what is stamped is what was typed, even when an earlier drawing failed.
static bool stampLine(HWND canvas, const TextLine& line)
{
    const bool stamped = renderTextStrip(line.buffer) && stampTextStrip();
    invalidateStrip(canvas);
    return stamped;
}

static void startLineAt(HWND canvas, const TextLine& line, int x, int y)
{
    session->textOriginX = session->caretX = x;
    session->textOriginY = session->caretY = y;
    sessionExtras.waiting = {};
    clearLine(line);
    renderLine(canvas, line);
    showTextCaret(canvas);
}

static void freeLine()
{
    if (session->textBuffer) GlobalFree(session->textBuffer);
    session->textBuffer = nullptr;
    freeTextStrip();
}

// Typing goes to the window with the focus.
static void takeFocus(HWND canvas)
{
    if (GetFocus() != canvas) SetFocus(canvas);
}

static int openFirstLine(HWND canvas, int x, int y)
{
    endText(canvas);
    takeFocus(canvas);
    int imageWidth;
    if (!lockBitmapInfo(editedImage(), &imageWidth, nullptr, nullptr) || !createTextStrip(imageWidth)) return 0;
    session->textBuffer = GlobalAlloc(GHND, TEXT_BUFFER_SIZE);
    const OpenLine open;
    if (!open) {
        freeLine();
        return 0;
    }
    startLineAt(canvas, open.line, x, y - textLineHeight());
    return 1;
}

static bool insideStrip(int x, int y)
{
    const RECT strip = textStripRect();
    return x >= strip.left && x <= strip.right && y >= strip.top && y <= strip.bottom;
}

// The caret goes before the character under the point. Right of the text it is left one past the end,
// where typing does not show: only so does a click there keep the next key from changing the line.
static void moveCaretToPoint(HWND canvas, const TextLine& line, int x)
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

static void enterLine(HWND canvas, const TextLine& line)
{
    if (!stampLine(canvas, line)) return;  // the line stays open
    const int next = session->textOriginY + textLineHeight();
    if (next >= bitmapHeight(editedImage())) return;  // the last line stays open, and can be stamped again
    startLineAt(canvas, line, session->textOriginX, next);
}

struct CaretKey {
    UINT key;
    void (*move)(const TextLine& line);
};

static const CaretKey caretKeys[] = {
    {VK_END, moveCaretEnd}, {VK_HOME, moveCaretHome},   {VK_LEFT, moveCaretLeft},
    {VK_UP, moveCaretLeft}, {VK_RIGHT, moveCaretRight}, {VK_DOWN, moveCaretRight},
};

static bool moveCaretByKey(HWND canvas, const TextLine& line, UINT key)
{
    for (const CaretKey& row : caretKeys) {
        if (row.key != key) continue;
        row.move(line);
        moveCaret(canvas, line);
        return true;
    }
    return false;
}

static void editByKey(HWND canvas, const TextLine& line, UINT key)
{
    const bool changed =
        (key == VK_INSERT && lineFits(line) && insertSpace(line)) || (key == VK_DELETE && deleteAtCaret(line));
    if (!changed) return;
    moveCaret(canvas, line);
    renderLine(canvas, line);
}

// The bytes of a character go in together, or none. Bytes that turn out to begin none are dropped.
static bool typeByte(const TextLine& line, char byte)
{
    WaitingCharacter& waiting = sessionExtras.waiting;
    waiting.bytes[waiting.count++] = byte;
    const WaitingCharacter arrived = waiting;
    const int size = characterSize(line.leads, arrived.bytes, arrived.count);
    if (size == 0) return false;
    waiting = {};
    if (size < arrived.count) return typeByte(line, byte);
    return lineFits(line) && typeCharacter(line, arrived.bytes, size);
}

// Codes below the space are no text.
static bool editByCharacter(const TextLine& line, UINT character)
{
    if (character >= ' ') return typeByte(line, (char)character);
    sessionExtras.waiting = {};
    return character == VK_BACK && backspace(line);
}

int textClick(HWND canvas, int x, int y)
{
    if (!lineIsOpen()) return openFirstLine(canvas, x, y);
    takeFocus(canvas);
    const OpenLine open;
    if (!open) return 1;
    if (insideStrip(x, y)) {
        moveCaretToPoint(canvas, open.line, x);
    } else if (stampLine(canvas, open.line)) {
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

void showTextLine(HWND canvas, const ViewPicture& picture)
{
    if (!session->textStrip || !lineIsOpen()) return;
    HideCaret(canvas);
    showTextStrip(picture);
    if (session->caretCreated) ShowCaret(canvas);
}

void endText(HWND canvas)
{
    if (lineIsOpen()) invalidateStrip(canvas);
    dropTextCaret(canvas);
    freeLine();
    session->caretIndex = 0;
    sessionExtras.waiting = {};
}

void takeTextFocus(HWND canvas)
{
    if (lineIsOpen()) showTextCaret(canvas);
}

void loseTextFocus(HWND canvas)
{
    dropTextCaret(canvas);
}
