#include "color/contrast_dialog.h"

#include "canvas/view/canvas_coordinates.h"
#include "color/colour_adjustment.h"
#include "color/kernels/contrast_preview.h"
#include "controls/kovctrl32.h"
#include "image/bitmap_locks.h"
#include "image/bitmap_display.h"
#include "image/packed_bitmap.h"
#include "resources/resource_ids.h"
#include "session/dialogs/button_pictures.h"
#include "session/dialogs/dialog_face.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"
#include "session/ground/window_props.h"
#include "session/dialogs/scroll_bars.h"

struct AdjustmentBar {
    int barId, resetId, nameId;
    int ColourValues::*value;
};

static const AdjustmentBar bars[] = {
    {BAR_CONTRAST, BUTTON_RESET_CONTRAST, STRING_CONTRAST, &ColourValues::contrast},
    {BAR_BRIGHTNESS, BUTTON_RESET_BRIGHTNESS, STRING_BRIGHTNESS, &ColourValues::brightness},
    {BAR_SATURATION, BUTTON_RESET_SATURATION, STRING_SATURATION, &ColourValues::saturation},
    {BAR_HUE, BUTTON_RESET_HUE, STRING_HUE, &ColourValues::hue},
};

static ScrollRange rangeOf(const AdjustmentBar& bar)
{
    const ColourParameter& parameter = parameterOf(bar.value);
    return {parameter.lowest, parameter.highest, 1, 10};
}

static int neutralOf(const AdjustmentBar& bar)
{
    return parameterOf(bar.value).neutral;
}

static ColourValues valuesOf(HWND dialog)
{
    ColourValues values = neutralColourValues();
    for (const AdjustmentBar& bar : bars)
        values.*bar.value = scrollPosition(dialog, bar.barId);
    return values;
}

static void freePreview()
{
    if (session->previewImage) GlobalFree(session->previewImage);
    if (session->previewSource) GlobalFree(session->previewSource);
    session->previewImage = session->previewSource = nullptr;
}

static bool fillPreview(HGLOBAL preview, const BitsView& image)
{
    const LockedPixels pixels(preview);
    if (pixels) samplePreview(pixels.view, image);
    return (bool)pixels;
}

// Makes previewSource, and previewImage as a copy of it. 0 when there is no room, no 24-bit image or no
// memory; the dialog then works without a preview.
static int createContrastPreview(const RECT& client)
{
    const LockedPixels image(editedImage());
    if (!image) return 0;
    const PreviewSize size = previewSizeFor(image.view.width, image.view.height, client.right, client.bottom);
    session->previewSource = createBitmap(size.width, size.height, 24);
    if (session->previewSource && fillPreview(session->previewSource, image.view)) {
        session->previewImage = duplicateBitmap(session->previewSource, 1);
    }
    if (!session->previewImage) freePreview();
    return session->previewImage != nullptr;
}

// Flush right, at the top of the client area.
static RECT previewRect(HWND dialog)
{
    RECT client = {};
    GetClientRect(dialog, &client);
    return {client.right - bitmapWidth(session->previewImage), 0, client.right, bitmapHeight(session->previewImage)};
}

static void invalidatePreview(HWND dialog)
{
    const RECT rect = previewRect(dialog);
    InvalidateRect(dialog, &rect, FALSE);
}

static void recomputePreview(HWND dialog, const ColourValues& values)
{
    adjustImageColours(session->previewSource, session->previewImage, values);
    invalidatePreview(dialog);
}

// Width that the dialog needs: up to the last bar, then the preview, as tall as the dialog is.
static int widthWithPreview(HWND dialog, int height)
{
    const HWND lastBar = GetDlgItem(dialog, BAR_HUE);
    RECT bar = {};
    GetClientRect(lastBar, &bar);
    MapWindowPoints(lastBar, dialog, (POINT*)&bar, 2);
    int imageWidth, imageHeight;
    if (!lockBitmapInfo(editedImage(), &imageWidth, &imageHeight, nullptr) || imageHeight < 1) return bar.right;
    const LONGLONG width = bar.right + (LONGLONG)height * imageWidth / imageHeight;
    return width < SHRT_MAX ? (int)width : SHRT_MAX;  // windows are not wider
}

// Keeps a span on the screen: its far end first, then its near one.
static int onScreen(int start, int length, int screen)
{
    if (start + length > screen) start = screen - length;
    return start > 0 ? start : 0;
}

static void layoutContrastDialog(HWND dialog, const RECT& button)
{
    attachButtonPictures(dialog, PICTURE_TABLE_CONTRAST_RESET, moduleInstance);
    RECT window = {};
    GetWindowRect(dialog, &window);
    const int height = window.bottom - window.top;
    const int width = widthWithPreview(dialog, height);
    SetWindowPos(dialog, nullptr, onScreen(button.right, width, GetSystemMetrics(SM_CXSCREEN)),
                 onScreen(button.top, height, GetSystemMetrics(SM_CYSCREEN)), width, height, SWP_NOZORDER);
    for (const AdjustmentBar& bar : bars) {
        setScrollBar(dialog, bar.barId, rangeOf(bar), neutralOf(bar));
        nameScrollBar(dialog, bar.barId, (UINT)bar.nameId);
    }
    RECT client = {};
    GetClientRect(dialog, &client);
    createContrastPreview(client);
}

static INT_PTR onInitDialog(HWND dialog, WPARAM, LPARAM lParam)
{
    attachPicturesUnlessLibraryDoes(dialog, PICTURE_TABLE_CONTRAST_END, moduleInstance);
    session->previewSource = session->previewImage = nullptr;
    layoutContrastDialog(dialog, *(const RECT*)lParam);
    SetFocus(GetDlgItem(dialog, BUTTON_OK));  // what Enter means
    return FALSE;                             // the focus is set
}

static INT_PTR onPaint(HWND dialog, WPARAM, LPARAM)
{
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(dialog, &paint);
    const RECT rect = previewRect(dialog);
    if (dc) drawBitmap(dc, session->previewImage, &rect, SRCCOPY);
    EndPaint(dialog, &paint);
    return TRUE;
}

// While saturation and hue are neutral the preview follows every movement; otherwise it is made again
// only when a bar is let go.
static INT_PTR onScroll(HWND dialog, WPARAM wParam, LPARAM lParam)
{
    const int id = GetDlgCtrlID((HWND)lParam);
    for (const AdjustmentBar& bar : bars) {
        if (bar.barId == id) scrollStep((HWND)lParam, wParam, rangeOf(bar));
    }
    const ColourValues values = valuesOf(dialog), neutral = neutralColourValues();
    const bool neutralColour = values.saturation == neutral.saturation && values.hue == neutral.hue;
    if (LOWORD(wParam) == SB_ENDSCROLL || neutralColour) recomputePreview(dialog, values);
    showMovement((HWND)lParam, wParam);
    return TRUE;
}

// The message's lParam names no bar, by design: what counts is its code, on which the preview is made
// again from all four positions.
static void resetBar(HWND dialog, const AdjustmentBar& bar)
{
    const HWND control = GetDlgItem(dialog, bar.barId);
    SetScrollPos(control, SB_CTL, neutralOf(bar), TRUE);
    PostMessageA(dialog, WM_VSCROLL, SB_ENDSCROLL, MAKELPARAM(neutralOf(bar), (DWORD_PTR)control & 0xFFFF));
}

static void applyToImage(HWND dialog)
{
    const HGLOBAL image = editedImage();
    if (!image) return;
    const HCURSOR before = SetCursor(LoadCursorA(nullptr, (LPCSTR)IDC_WAIT));
    adjustImageColours(image, nullptr, valuesOf(dialog));
    noteWholeImageChanged();
    InvalidateRect(session->canvasWindow, nullptr, TRUE);
    copyBitmapInto(session->originalImage, image);
    SetCursor(before);
}

static INT_PTR onCommand(HWND dialog, WPARAM wParam, LPARAM)
{
    const int id = LOWORD(wParam);
    for (const AdjustmentBar& bar : bars) {
        if (bar.resetId == id) resetBar(dialog, bar);
    }
    if (id == BUTTON_OK) applyToImage(dialog);
    if (id == BUTTON_OK || id == BUTTON_CANCEL) EndDialog(dialog, id == BUTTON_OK);
    return TRUE;
}

static INT_PTR onDestroy(HWND dialog, WPARAM, LPARAM)
{
    freePreview();
    releaseDialog(dialog);
    removeAllProps(dialog);
    return TRUE;
}

static const DialogRoute routes[] = {
    {WM_INITDIALOG, onInitDialog}, {WM_PAINT, onPaint},           {WM_ERASEBKGND, paintFaceBackground},
    {WM_VSCROLL, onScroll},        {WM_COMMAND, onCommand},       {WM_NCHITTEST, hitFace},
    {WM_NCLBUTTONDOWN, grabFace},  {WM_NCLBUTTONUP, releaseFace}, {WM_DESTROY, onDestroy},
};

static INT_PTR CALLBACK contrastDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    return session ? dispatchDialogMessage(routes, dialog, message, wParam, lParam) : FALSE;
}

static void enableSessionWindows(BOOL enable)
{
    EnableWindow(session->hostDialog, enable);
    if (IsWindow(session->libraryDialog)) EnableWindow(session->libraryDialog, enable);
}

// One that has been ended while a bar was being dragged is there until the bar is let go, and the palette enabled.
void openContrastDialog(HWND palette, int buttonId)
{
    if (sessionExtras.contrastRuns) return;
    RECT button = {};
    GetWindowRect(GetDlgItem(palette, buttonId), &button);
    readLocaleLanguage();
    enableSessionWindows(FALSE);
    sessionExtras.contrastRuns = true;
    runLocalDialog(moduleInstance, CONTRAST_TEMPLATE, palette, contrastDialogProc, (LPARAM)&button);
    sessionExtras.contrastRuns = false;
    if (sessionGoesOn()) enableSessionWindows(TRUE);
}
