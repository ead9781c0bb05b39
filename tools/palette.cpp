#include "tools/palette.h"

#include "controls/kovctrl32.h"
#include "resources/resource_ids.h"
#include "selection/selection.h"
#include "session/button_pictures.h"
#include "session/module_state.h"
#include "session/session_record.h"
#include "session/window_props.h"
#include "tools/brush_preview.h"
#include "tools/palette_controls.h"
#include "tools/scroll_bars.h"
#include "tools/settings_file.h"

namespace {

constexpr int BACKGROUND_STYLE = 0x42;

INT_PTR onInitDialog(HWND palette, WPARAM, LPARAM)
{
    attachButtonPictures(palette, PICTURE_TABLE_PALETTE, moduleInstance);
    attachPicturesUnlessLibraryDoes(palette, PICTURE_TABLE_PALETTE_END, moduleInstance);
    readToolSettings();
    setScrollBar(palette, BAR_WIDTH, BRUSH_SIZE_RANGE, (int)session->brushWidth);
    setScrollBar(palette, BAR_HEIGHT, BRUSH_SIZE_RANGE, (int)session->brushHeight);
    setScrollBar(palette, BAR_OPACITY, OPACITY_RANGE, (int)session->opacity);
    CheckDlgButton(palette, CHECK_LOCK_LH, BST_CHECKED);
    session->brushShape = SHAPE_CIRCLE;
    CheckRadioButton(palette, BUTTON_CIRCLE, BUTTON_RECTANGLE, BUTTON_CIRCLE);
    CheckRadioButton(palette, BUTTON_EDGE_FULL, BUTTON_EDGE_SMOOTH, BUTTON_EDGE_FULL);
    session->selectionActive = 0;
    session->caretCreated = 0;
    session->caretIndex = 0;
    return TRUE;
}

INT_PTR onCommand(HWND palette, WPARAM wParam, LPARAM)
{
    runPaletteCommand(palette, LOWORD(wParam));
    return FALSE;
}

INT_PTR onScroll(HWND palette, WPARAM wParam, LPARAM lParam)
{
    scrollPaletteBar(palette, (HWND)lParam, wParam);
    return TRUE;
}

INT_PTR onPaint(HWND palette, WPARAM, LPARAM)
{
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(palette, &paint);
    if (dc) drawBrushPreview(dc, previewArea(palette), (int)session->brushWidth, (int)session->brushHeight, 1);
    EndPaint(palette, &paint);
    return TRUE;
}

INT_PTR onEraseBackground(HWND palette, WPARAM wParam, LPARAM)
{
    paintDialogBackground(palette, (HDC)wParam, BACKGROUND_STYLE);
    SetWindowLongPtrA(palette, DWLP_MSGRESULT, TRUE);
    return TRUE;
}

// Any point that is not a control is the title bar: the palette is dragged by it.
INT_PTR onHitTest(HWND palette, WPARAM, LPARAM)
{
    SetWindowLongPtrA(palette, DWLP_MSGRESULT, HTCAPTION);
    return TRUE;
}

INT_PTR onNcButtonDown(HWND, WPARAM, LPARAM)
{
    SetCursor(LoadCursorA(moduleInstance, MAKEINTRESOURCEA(CURSOR_DRAG_DIALOG)));
    return FALSE;
}

INT_PTR onNcButtonUp(HWND, WPARAM, LPARAM)
{
    SetCursor(LoadCursorA(nullptr, (LPCSTR)IDC_ARROW));
    return FALSE;
}

INT_PTR onDestroy(HWND palette, WPARAM, LPARAM)
{
    if (session->selectionActive) clearSelection();
    saveToolSettings(session->currentTool);
    writeToolSettings();
    releaseDialog(palette);
    removeAllProps(palette);
    return TRUE;
}

struct Route {
    UINT message;
    INT_PTR (*handle)(HWND palette, WPARAM wParam, LPARAM lParam);
};

const Route routes[] = {
    {WM_INITDIALOG, onInitDialog},
    {WM_COMMAND, onCommand},
    {WM_HSCROLL, onScroll},
    {WM_VSCROLL, onScroll},
    {WM_PAINT, onPaint},
    {WM_ERASEBKGND, onEraseBackground},
    {WM_NCHITTEST, onHitTest},
    {WM_NCLBUTTONDOWN, onNcButtonDown},
    {WM_NCLBUTTONUP, onNcButtonUp},
    {WM_DESTROY, onDestroy},
};

}  // namespace

INT_PTR CALLBACK paletteDialogProc(HWND palette, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!session) return FALSE;
    for (const Route& route : routes) {
        if (route.message == message) return route.handle(palette, wParam, lParam);
    }
    return FALSE;
}

RECT previewArea(HWND palette)
{
    RECT area = {0, 0, 0, 0};
    const HWND place = GetDlgItem(palette, AREA_PREVIEW);
    GetClientRect(place, &area);
    MapWindowPoints(place, palette, (POINT*)&area, 2);
    return area;
}

void invalidateBrushPreview()
{
    if (!session->paletteDialog) return;
    const RECT area = previewArea(session->paletteDialog);
    InvalidateRect(session->paletteDialog, &area, FALSE);
}
