#include "library/empty_library.h"

#include <cstdint>

#include "resources/resource_ids.h"
#include "session/ground/language.h"
#include "session/ground/module_state.h"

namespace {

constexpr int TEXT_SIZE = 160;
constexpr int MARGIN = 8;
constexpr int FAINTNESS = 60;  // percent of the background that shines through a picture

uint8_t mixed(int picture, int alpha, int background)
{
    const int shown = picture + background * (255 - alpha) / 255;
    return (uint8_t)((shown * (100 - FAINTNESS) + background * FAINTNESS) / 100);
}

// A picture's pixels (blue, green, red, alpha, multiplied by it) over one colour, faint.
void fadePixels(uint8_t* pixels, int count, COLORREF background)
{
    for (uint8_t* p = pixels; p < pixels + 4 * count; p += 4) {
        p[0] = mixed(p[0], p[3], GetBValue(background));
        p[1] = mixed(p[1], p[3], GetGValue(background));
        p[2] = mixed(p[2], p[3], GetRValue(background));
    }
}

// Returns the picture's height; 0 when it cannot be looked at.
int drawFaint(HDC dc, POINT at, HBITMAP picture)
{
    BITMAP shape = {};
    if (!GetObjectA(picture, sizeof shape, &shape)) return 0;
    fadePixels((uint8_t*)shape.bmBits, shape.bmWidth * shape.bmHeight, GetSysColor(COLOR_WINDOW));
    const HDC memory = CreateCompatibleDC(dc);
    const HGDIOBJ before = SelectObject(memory, picture);
    BitBlt(dc, at.x - shape.bmWidth / 2, at.y, shape.bmWidth, shape.bmHeight, memory, 0, 0, SRCCOPY);
    SelectObject(memory, before);
    DeleteDC(memory);
    return shape.bmHeight;
}

// Draws a picture of the module, its top in the middle at `at`; returns its height.
int drawFaintPicture(HDC dc, POINT at, int id)
{
    const HBITMAP picture =
        (HBITMAP)LoadImageA(moduleInstance, MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
    const int height = picture ? drawFaint(dc, at, picture) : 0;
    if (picture) DeleteObject(picture);
    return height;
}

void drawHint(HDC dc, RECT room)
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

}  // namespace

void paintEmptyLibrary(HWND list)
{
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(list, &paint);
    RECT room;
    if (dc && GetClientRect(list, &room)) {
        FillRect(dc, &room, GetSysColorBrush(COLOR_WINDOW));
        InflateRect(&room, -MARGIN, -MARGIN);
        const LONG middle = (room.left + room.right) / 2;
        room.top += drawFaintPicture(dc, {middle, room.top}, PICTURE_SELECTION + PICTURE_LARGE) + MARGIN;
        room.top += drawFaintPicture(dc, {middle, room.top}, PICTURE_SAVE + PICTURE_LARGE) + MARGIN;
        drawHint(dc, room);
    }
    EndPaint(list, &paint);
}
