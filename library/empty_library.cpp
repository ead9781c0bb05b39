#include "library/empty_library.h"

#include <cstdint>

#include "resources/resource_ids.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"

constexpr int TEXT_SIZE = 160;
constexpr int MARGIN = 8;
constexpr int FAINTNESS = 60;  // percent of the background that shines through a picture

static uint8_t mixed(int picture, int alpha, int background)
{
    const int shown = picture + background * (255 - alpha) / 255;
    return (uint8_t)((shown * (100 - FAINTNESS) + background * FAINTNESS) / 100);
}

// A picture's pixels (blue, green, red, alpha, multiplied by it) over one colour, faint.
static void fadePixels(uint8_t* pixels, int count, COLORREF background)
{
    for (uint8_t* p = pixels; p < pixels + 4 * count; p += 4) {
        p[0] = mixed(p[0], p[3], GetBValue(background));
        p[1] = mixed(p[1], p[3], GetGValue(background));
        p[2] = mixed(p[2], p[3], GetRValue(background));
    }
}

// The pictures are drawn at 1.5 times the size of a button's, and grow with the dots per inch. Of the drawings there
// are, the nearest one serves as it is; the largest is enlarged, from 1.5 times on, where the screen is finer still.
constexpr int USUAL_DPI = 96;

static int dpiOf(HDC dc)
{
    return GetDeviceCaps(dc, LOGPIXELSY);
}

static int drawingFor(HDC dc)
{
    return 4 * dpiOf(dc) > 5 * USUAL_DPI ? PICTURE_DOUBLE : PICTURE_LARGE;
}

static SIZE sizeOnScreen(HDC dc, const BITMAP& shape)
{
    const int wanted = 3 * dpiOf(dc), drawn = 4 * USUAL_DPI;  // of the double drawing
    if (drawingFor(dc) != PICTURE_DOUBLE || 2 * wanted < 3 * drawn) return {shape.bmWidth, shape.bmHeight};
    return {MulDiv(shape.bmWidth, wanted, drawn), MulDiv(shape.bmHeight, wanted, drawn)};
}

// Returns the picture's height; 0 when it cannot be looked at.
static int drawFaint(HDC dc, POINT at, HBITMAP picture)
{
    BITMAP shape = {};
    if (!GetObjectA(picture, sizeof shape, &shape)) return 0;
    fadePixels((uint8_t*)shape.bmBits, shape.bmWidth * shape.bmHeight, GetSysColor(COLOR_WINDOW));
    const HDC memory = CreateCompatibleDC(dc);
    const HGDIOBJ before = SelectObject(memory, picture);
    const SIZE size = sizeOnScreen(dc, shape);
    SetStretchBltMode(dc, HALFTONE);
    StretchBlt(dc, at.x - size.cx / 2, at.y, size.cx, size.cy, memory, 0, 0, shape.bmWidth, shape.bmHeight, SRCCOPY);
    SelectObject(memory, before);
    DeleteDC(memory);
    return size.cy;
}

// Draws a picture of the module, its top in the middle at `at`; returns its height.
static int drawFaintPicture(HDC dc, POINT at, int id)
{
    const HBITMAP picture =
        (HBITMAP)LoadImageA(moduleInstance, MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
    const int height = picture ? drawFaint(dc, at, picture) : 0;
    if (picture) DeleteObject(picture);
    return height;
}

static void drawHint(HDC dc, RECT room)
{
    WCHAR text[TEXT_SIZE];
    if (!loadLocalString(moduleInstance, STRING_LIBRARY_EMPTY, text, TEXT_SIZE)) return;
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    const HFONT font = CreateFontIndirectW(&metrics.lfMessageFont);
    const HGDIOBJ before = SelectObject(dc, font ? font : GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
    DrawTextW(dc, text, -1, &room, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(dc, before);
    if (font) DeleteObject(font);
}

void paintEmptyLibrary(HWND list)
{
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(list, &paint);
    RECT room;
    if (dc && GetClientRect(list, &room)) {
        FillRect(dc, &room, GetSysColorBrush(COLOR_WINDOW));
        InflateRect(&room, -MARGIN, -MARGIN);
        const LONG middle = (room.left + room.right) / 2;
        room.top += drawFaintPicture(dc, {middle, room.top}, PICTURE_SELECTION + drawingFor(dc)) + MARGIN;
        room.top += drawFaintPicture(dc, {middle, room.top}, PICTURE_SAVE + drawingFor(dc)) + MARGIN;
        drawHint(dc, room);
    }
    EndPaint(list, &paint);
}
