#include "text/text_caret.h"

#include "canvas/view/canvas_coordinates.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "text/text_strip.h"

constexpr int CARET_WIDTH = 2;

// Where the caret is shown, client pixels. Fitted, its image coordinates are taken for them as they are.
static RECT caretRect(HWND canvas)
{
    const int x = session->caretX, y = session->caretY;
    if (!isZoomed(sessionExtras.canvas.view)) return {x, y, x + CARET_WIDTH, y + textLineHeight()};
    const RECT shown = deviceRectOf(canvas, {x, y, x, y + textLineHeight()});
    return {shown.left, shown.top, shown.left + CARET_WIDTH, shown.bottom};
}

void setTextCaret(HWND canvas)
{
    const RECT caret = caretRect(canvas);
    SetCaretPos(caret.left, caret.top);
}

void showTextCaret(HWND canvas)
{
    if (!session->caretCreated) {
        const RECT caret = caretRect(canvas);
        session->caretCreated = CreateCaret(canvas, nullptr, CARET_WIDTH, caret.bottom - caret.top) != 0;
    }
    setTextCaret(canvas);
    ShowCaret(canvas);
}

void dropTextCaret(HWND canvas)
{
    if (!session->caretCreated) return;
    HideCaret(canvas);
    DestroyCaret();
    session->caretCreated = 0;
}

void placeCaretForView(HWND canvas)
{
    if (!session->caretCreated) return;
    dropTextCaret(canvas);
    showTextCaret(canvas);
}
