#include "tools/palette/palette.h"

#include "controls/kovctrl32.h"
#include "resources/resource_ids.h"
#include "selection/clear_selection.h"
#include "session/dialogs/button_pictures.h"
#include "session/dialogs/dialog_face.h"
#include "session/ground/module_state.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "tools/brush/brush_preview.h"
#include "tools/palette/palette_controls.h"
#include "session/dialogs/scroll_bars.h"
#include "tools/settings/settings_file.h"

constexpr int PREVIEW_FRAME = 2;  // an etched line around the preview, outside of it

static INT_PTR onInitDialog(HWND palette, WPARAM, LPARAM)
{
    attachButtonPictures(palette, PICTURE_TABLE_PALETTE, moduleInstance);
    attachPicturesUnlessLibraryDoes(palette, PICTURE_TABLE_PALETTE_END, moduleInstance);
    readToolSettings();
    setScrollBar(palette, BAR_WIDTH, BRUSH_SIZE_RANGE, (int)session->brushWidth);
    setScrollBar(palette, BAR_HEIGHT, BRUSH_SIZE_RANGE, (int)session->brushHeight);
    setScrollBar(palette, BAR_OPACITY, OPACITY_RANGE, (int)session->opacity);
    nameScrollBar(palette, BAR_WIDTH, STRING_WIDTH);
    nameScrollBar(palette, BAR_HEIGHT, STRING_HEIGHT);
    nameScrollBar(palette, BAR_OPACITY, STRING_OPACITY);
    CheckDlgButton(palette, CHECK_LOCK_LH, BST_CHECKED);
    session->brushShape = SHAPE_CIRCLE;
    CheckRadioButton(palette, BUTTON_CIRCLE, BUTTON_RECTANGLE, BUTTON_CIRCLE);
    CheckRadioButton(palette, BUTTON_EDGE_FULL, BUTTON_EDGE_SMOOTH, BUTTON_EDGE_FULL);
    session->selectionActive = 0;
    session->caretCreated = 0;
    session->caretIndex = 0;
    return TRUE;
}

static INT_PTR onCommand(HWND palette, WPARAM wParam, LPARAM)
{
    runPaletteCommand(palette, LOWORD(wParam));
    return FALSE;
}

static INT_PTR onScroll(HWND palette, WPARAM wParam, LPARAM lParam)
{
    scrollPaletteBar(palette, (HWND)lParam, wParam);
    return TRUE;
}

static INT_PTR onPaint(HWND palette, WPARAM, LPARAM)
{
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(palette, &paint);
    RECT frame = previewArea(palette);
    if (dc) drawBrushPreview(dc, frame, (int)session->brushWidth, (int)session->brushHeight, 1);
    InflateRect(&frame, PREVIEW_FRAME, PREVIEW_FRAME);
    if (dc) DrawEdge(dc, &frame, EDGE_ETCHED, BF_RECT);
    EndPaint(palette, &paint);
    return TRUE;
}

static INT_PTR onDestroy(HWND palette, WPARAM, LPARAM)
{
    if (session->selectionActive) clearSelection();
    saveToolSettings(session->currentTool);
    writeToolSettings();
    releaseDialog(palette);
    removeAllProps(palette);
    return TRUE;
}

static const DialogRoute routes[] = {
    {WM_INITDIALOG, onInitDialog}, {WM_COMMAND, onCommand},      {WM_HSCROLL, onScroll},
    {WM_VSCROLL, onScroll},        {WM_PAINT, onPaint},          {WM_ERASEBKGND, paintFaceBackground},
    {WM_NCHITTEST, hitFace},       {WM_NCLBUTTONDOWN, grabFace}, {WM_NCLBUTTONUP, releaseFace},
    {WM_DESTROY, onDestroy},
};

INT_PTR CALLBACK paletteDialogProc(HWND palette, UINT message, WPARAM wParam, LPARAM lParam)
{
    return session ? dispatchDialogMessage(routes, palette, message, wParam, lParam) : FALSE;
}
