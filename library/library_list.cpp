#include "library/library_list.h"

#include <cstdlib>
#include <cwchar>

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/canvas_press.h"
#include "controls/kovctrl32.h"
#include "image/bitmap_display.h"
#include "image/packed_bitmap.h"
#include "image/pixels/scarce_memory.h"
#include "library/empty_library.h"
#include "library/library_store.h"
#include "library/selection_file.h"
#include "selection/clear_selection.h"
#include "selection/stored_selection.h"
#include "session/dialogs/tool_choice.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

constexpr COLORREF THUMBNAIL_BACKGROUND = 0x00C0C0C0;
constexpr COLORREF SELECTED_FRAME = RGB(0, 240, 0);
constexpr int PICTURE_MARGIN = 6;
constexpr int FOCUS_MARGIN = 4;
constexpr int DRAG_MARGIN = 5;

struct LibraryItem {
    LibraryPath path;
    HGLOBAL thumbnail;  // as stored
    HGLOBAL shown;      // scaled to the size in which it is drawn
};

static LibraryItem* itemAt(HWND list, int index)
{
    if (index < 0) return nullptr;
    const LRESULT data = SendMessageA(list, LB_GETITEMDATA, (WPARAM)index, 0);
    return data == LB_ERR ? nullptr : (LibraryItem*)data;
}

static void addItem(void* list, const LibraryPath& path, HGLOBAL thumbnail)
{
    LibraryItem* item = (LibraryItem*)takeMemory(sizeof(LibraryItem));
    if (!item) {
        GlobalFree(thumbnail);
        return;
    }
    *item = {path, thumbnail, nullptr};
    if (!list || SendMessageA((HWND)list, LB_ADDSTRING, 0, (LPARAM)item) < 0) freeLibraryItem((ULONG_PTR)item);
}

// The largest rectangle of the thumbnail's proportions inside `room`, centred.
static RECT fitted(const RECT& room, int width, int height)
{
    const int roomWidth = room.right - room.left, roomHeight = room.bottom - room.top;
    int w = roomWidth, h = roomWidth * height / width;
    if (h > roomHeight) {
        h = roomHeight;
        w = h * width / height;
    }
    const int left = room.left + (roomWidth - w) / 2, top = room.top + (roomHeight - h) / 2;
    return {left, top, left + w, top + h};
}

// Scaled once; later paints need no scaling.
static HGLOBAL shownAt(LibraryItem& item, int width, int height)
{
    if (item.shown && bitmapWidth(item.shown) == width && bitmapHeight(item.shown) == height) return item.shown;
    if (item.shown) GlobalFree(item.shown);
    item.shown = scaleBitmap(item.thumbnail, width, height);
    return item.shown;
}

static void frame(HDC dc, const RECT& rect, COLORREF colour)
{
    SetDCBrushColor(dc, colour);
    FrameRect(dc, &rect, (HBRUSH)GetStockObject(DC_BRUSH));
}

static RECT drawPicture(HDC dc, LibraryItem* item, const RECT& room)
{
    const int width = item ? bitmapWidth(item->thumbnail) : 0, height = item ? bitmapHeight(item->thumbnail) : 0;
    if (width < 1 || height < 1) {
        SetDCBrushColor(dc, THUMBNAIL_BACKGROUND);
        FillRect(dc, &room, (HBRUSH)GetStockObject(DC_BRUSH));
        return room;
    }
    const RECT picture = fitted(room, width, height);
    drawBitmap(dc, shownAt(*item, picture.right - picture.left, picture.bottom - picture.top), &picture, SRCCOPY);
    return picture;
}

// The item's area beside its picture. The picture itself is left alone, so that it does not flicker.
static void fillAround(HDC dc, const RECT& item, const RECT& picture)
{
    const int saved = SaveDC(dc);
    ExcludeClipRect(dc, picture.left, picture.top, picture.right, picture.bottom);
    FillRect(dc, &item, GetSysColorBrush(COLOR_WINDOW));
    RestoreDC(dc, saved);
}

// ---- dragging

// What is grabbed: the item under the pointer, its rectangle on the screen.
struct Grab {
    LibraryItem* item;
    RECT rect;
    POINT pointer;
};

static bool grabItem(HWND list, Grab& grab)
{
    const int index = (int)SendMessageA(list, LB_GETCARETINDEX, 0, 0);
    grab.item = itemAt(list, index);
    if (!grab.item || SendMessageA(list, LB_GETITEMRECT, (WPARAM)index, (LPARAM)&grab.rect) == LB_ERR) return false;
    InflateRect(&grab.rect, -DRAG_MARGIN, -DRAG_MARGIN);
    MapWindowPoints(list, nullptr, (POINT*)&grab.rect, 2);
    grab.pointer = pointerOnScreen();
    return PtInRect(&grab.rect, grab.pointer);
}

static bool dragItem(HWND list, const Grab& grab)
{
    const HWND dialog = GetParent(list);
    RECT rect = grab.rect;
    MapWindowPoints(nullptr, dialog, (POINT*)&rect, 2);
    const POINT offset = {grab.pointer.x - grab.rect.left, grab.pointer.y - grab.rect.top};
    const HGLOBAL picture = grab.item->shown ? grab.item->shown : grab.item->thumbnail;
    return dragBitmap(dialog, picture, &rect, offset, THUMBNAIL_BACKGROUND) != 0;
}

// Only inside the editing window, and not on a window that lies over it.
static bool droppedOnCanvas()
{
    POINT at = pointerOnScreen();
    const HWND under = WindowFromPoint(at);
    if (under != session->hostDialog && under != session->canvasWindow) return false;
    RECT client = {};
    GetClientRect(session->hostDialog, &client);
    MapWindowPoints(nullptr, session->hostDialog, &at, 1);
    return PtInRect(&client, at);
}

// What floats is dropped in any case, also when the file has become unreadable.
static void placeItem(const LibraryPath& path)
{
    HGLOBAL image, mask;
    const HWND canvas = session->canvasWindow;
    endCanvasPress();
    clearSelection();
    if (!readSelectionBitmaps(path.text, &image, &mask)) return;
    if (placeStoredSelection(imagePointOf(canvas, pointerIn(canvas)), image, mask)) selectTool(TOOL_SELECTION);
}

static LRESULT pressList(HWND list, WPARAM wParam, LPARAM lParam)
{
    // The box makes the item under the pointer current, and must not wait for the button itself.
    const LRESULT result = CallWindowProcW(sessionExtras.previousListProc, list, WM_LBUTTONDOWN, wParam, lParam);
    CallWindowProcW(sessionExtras.previousListProc, list, WM_LBUTTONUP, wParam, lParam);
    Grab grab;
    if (!grabItem(list, grab)) return result;
    const LibraryPath path = grab.item->path;
    const bool dropped = dragItem(list, grab);
    if (!IsWindow(list)) return result;  // the session ended in the middle of the drag
    CallWindowProcW(sessionExtras.previousListProc, list, WM_LBUTTONUP, wParam, lParam);
    if (dropped && droppedOnCanvas()) placeItem(path);
    return result;
}

// A press soon after another one is a double click to the system, also when the list was scrolled meanwhile.
static bool isPress(UINT message)
{
    return message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK;
}

static LRESULT CALLBACK libraryListProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (isPress(message) && SendMessageA(list, LB_GETCOUNT, 0, 0) > 0) return pressList(list, wParam, lParam);
    if (SendMessageA(list, LB_GETCOUNT, 0, 0) == 0) {
        if (message == WM_PAINT) return paintEmptyLibrary(list), 0;
        if (message == WM_ERASEBKGND) return 1;
        // The system draws a focus rectangle where the first item would be.
        if (message == WM_SETFOCUS || message == WM_KILLFOCUS) InvalidateRect(list, nullptr, FALSE);
    }
    // What changes between a hint and items is painted anew.
    if (message == LB_ADDSTRING || message == LB_DELETESTRING) InvalidateRect(list, nullptr, TRUE);
    // Pictures stand in the middle of their items: another width moves them all, as when the scroll bar appears.
    if (message == WM_SIZE) InvalidateRect(list, nullptr, FALSE);
    return CallWindowProcW(sessionExtras.previousListProc, list, message, wParam, lParam);
}

void fillLibraryList(HWND list)
{
    SendMessageA(list, WM_SETREDRAW, FALSE, 0);
    listLibraryFiles(addItem, list);
    SendMessageA(list, WM_SETREDRAW, TRUE, 0);
}

void addLibraryItem(HWND list, const WCHAR* path)
{
    const HGLOBAL thumbnail = readSelectionThumbnail(path);
    if (!thumbnail) return;
    LibraryPath copy;
    lstrcpynW(copy.text, path, MODULE_PATH_SIZE);
    addItem(list, copy, thumbnail);
}

const WCHAR* currentLibraryPath(HWND list)
{
    const LibraryItem* item = itemAt(list, (int)SendMessageA(list, LB_GETCURSEL, 0, 0));
    return item ? item->path.text : nullptr;
}

void removeLibraryItem(HWND list, const WCHAR* path)
{
    for (int row = (int)SendMessageA(list, LB_GETCOUNT, 0, 0) - 1; row >= 0; --row) {
        const LibraryItem* item = itemAt(list, row);
        if (item && wcscmp(item->path.text, path) == 0) SendMessageA(list, LB_DELETESTRING, (WPARAM)row, 0);
    }
}

void drawLibraryItem(const DRAWITEMSTRUCT& draw)
{
    const COLORREF windowColour = GetSysColor(COLOR_WINDOW);
    RECT item = draw.rcItem;
    if (draw.itemID == (UINT)-1) return frame(draw.hDC, item, windowColour);
    RECT room = item;
    InflateRect(&room, -PICTURE_MARGIN, -PICTURE_MARGIN);
    RECT picture = drawPicture(draw.hDC, (LibraryItem*)draw.itemData, room);
    fillAround(draw.hDC, item, picture);
    if (draw.itemState & ODS_SELECTED) {
        InflateRect(&picture, 1, 1);
        frame(draw.hDC, picture, SELECTED_FRAME);
    }
    InflateRect(&item, -FOCUS_MARGIN, -FOCUS_MARGIN);
    if (draw.itemState & ODS_FOCUS) DrawFocusRect(draw.hDC, &item);
}

void freeLibraryItem(ULONG_PTR itemData)
{
    LibraryItem* item = (LibraryItem*)itemData;
    if (!item) return;
    if (item->thumbnail) GlobalFree(item->thumbnail);
    if (item->shown) GlobalFree(item->shown);
    free(item);
}

void setLibraryItemHeight(HWND list)
{
    RECT client;
    if (!GetClientRect(list, &client)) return;
    SendMessageA(list, LB_SETITEMHEIGHT, 0, (LPARAM)(int)(client.right * 0.75));
}

void subclassLibraryList(HWND list)
{
    sessionExtras.previousListProc = (WNDPROC)SetWindowLongPtrW(list, GWLP_WNDPROC, (LONG_PTR)&libraryListProc);
}

void unsubclassLibraryList(HWND list)
{
    if (sessionExtras.previousListProc) SetWindowLongPtrW(list, GWLP_WNDPROC, (LONG_PTR)sessionExtras.previousListProc);
    sessionExtras.previousListProc = nullptr;
}
