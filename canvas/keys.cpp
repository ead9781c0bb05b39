#include "canvas/keys.h"

#include "canvas/pan.h"
#include "canvas/pointer_input.h"
#include "canvas/view/canvas_coordinates.h"
#include "canvas/view_change.h"
#include "resources/resource_ids.h"
#include "selection/selection_view.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

constexpr int SMALL_MOVE = 1, LARGE_MOVE = 10;  // image pixels

static bool isDown(int key)
{
    return (GetKeyState(key) & 0x8000) != 0;
}

// Control without Alt: together they are AltGr, which types.
static bool controlIsDown()
{
    return isDown(VK_CONTROL) && !isDown(VK_MENU);
}

static void runPaletteButton(int id)
{
    const HWND palette = session->paletteDialog;
    if (palette) SendMessageA(palette, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), (LPARAM)GetDlgItem(palette, id));
}

// As a click in the bar's arrow; the palette follows with the other bar where both are locked.
static void stepBar(HWND palette, int id, WPARAM step)
{
    const HWND bar = GetDlgItem(palette, id);
    if (!bar || !IsWindowEnabled(bar)) return;
    SendMessageA(palette, WM_HSCROLL, step, (LPARAM)bar);
    SendMessageA(palette, WM_HSCROLL, SB_ENDSCROLL, (LPARAM)bar);
}

static void stepBrush(WPARAM step)
{
    const HWND palette = session->paletteDialog;
    if (!palette) return;
    stepBar(palette, BAR_WIDTH, step);
    if (IsDlgButtonChecked(palette, CHECK_LOCK_LH) != BST_CHECKED || !IsWindowEnabled(GetDlgItem(palette, BAR_WIDTH))) {
        stepBar(palette, BAR_HEIGHT, step);
    }
}

static void zoomIn(HWND canvas)
{
    showView(canvas, steppedAboutCentre(sessionExtras.canvas.view, 1));
}

static void zoomOut(HWND canvas)
{
    showView(canvas, steppedAboutCentre(sessionExtras.canvas.view, -1));
}

static void fit(HWND canvas)
{
    showView(canvas, fittedView(sessionExtras.canvas.view));
}

static void showFullSize(HWND canvas)
{
    showView(canvas, fullSizeView(sessionExtras.canvas.view));
}

static void shrinkBrush(HWND)
{
    stepBrush(SB_LINEUP);
}

static void growBrush(HWND)
{
    stepBrush(SB_LINEDOWN);
}

// By what is typed, so that it holds for every keyboard and both blocks. "=" is "+" without Shift on some, "_" the
// other way round.
struct TypedKey {
    char character;
    void (*run)(HWND canvas);
};

static const TypedKey typedKeys[] = {
    {'+', zoomIn}, {'=', zoomIn},       {'-', zoomOut},     {'_', zoomOut},
    {'0', fit},    {'1', showFullSize}, {'[', shrinkBrush}, {']', growBrush},
};

static void moveSelection(int dx, int dy)
{
    const int step = isDown(VK_SHIFT) ? LARGE_MOVE : SMALL_MOVE;
    nudgeSelection(dx * step, dy * step);
}

static void endDragOrSelection(HWND canvas)
{
    if (!cancelPan(canvas) && !cancelPress(canvas)) closeSelection();
}

static void undo(HWND)
{
    runPaletteButton(isDown(VK_SHIFT) ? BUTTON_REDO : BUTTON_UNDO);
}

static void redo(HWND)
{
    runPaletteButton(BUTTON_REDO);
}

struct PressedKey {
    UINT key;
    bool withControl, duringPress;
    void (*run)(HWND canvas);
};

static const PressedKey pressedKeys[] = {
    {'Z', true, false, undo},
    {'Y', true, false, redo},
    {VK_LEFT, false, false, [](HWND) { moveSelection(-1, 0); }},
    {VK_RIGHT, false, false, [](HWND) { moveSelection(1, 0); }},
    {VK_UP, false, false, [](HWND) { moveSelection(0, -1); }},
    {VK_DOWN, false, false, [](HWND) { moveSelection(0, 1); }},
    {VK_RETURN, false, false, [](HWND canvas) { applyFloatingSelection(canvas); }},
    {VK_ESCAPE, false, true, endDragOrSelection},
    // Digits that type something else without Shift, or nothing without the number lock. Twice does no harm.
    {'0', false, false, fit},
    {'1', false, false, showFullSize},
    {VK_NUMPAD0, false, false, fit},
    {VK_NUMPAD1, false, false, showFullSize},
};

static bool isDigit(UINT key)
{
    return key == '0' || key == '1';
}

static bool pointerIsBusy()
{
    return session->pressActive || panRuns();
}

void pressKey(HWND canvas, UINT key)
{
    if (key == VK_SPACE) setPanCursor(canvas);
    if (isDigit(key) && isDown(VK_SHIFT)) return;  // types what its keyboard has there
    for (const PressedKey& row : pressedKeys) {
        if (row.key == key && row.withControl == controlIsDown() && (row.duringPress || !pointerIsBusy())) {
            return row.run(canvas);
        }
    }
}

void typeKey(HWND canvas, UINT character)
{
    if (pointerIsBusy()) return;
    for (const TypedKey& row : typedKeys) {
        if ((UINT)(unsigned char)row.character == character) return row.run(canvas);
    }
}

void letGoOfKey(HWND canvas, UINT key)
{
    if (key == VK_SPACE && isZoomed(sessionExtras.canvas.view))
        SendMessageA(canvas, WM_SETCURSOR, (WPARAM)canvas, MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
}
