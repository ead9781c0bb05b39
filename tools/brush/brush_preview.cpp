#include "tools/brush/brush_preview.h"

#include "resources/resource_ids.h"
#include "session/ground/session_record.h"

constexpr COLORREF WHITE = 0x00FFFFFF;
constexpr COLORREF LIGHT_GREY = 0x00C0C0C0;
constexpr COLORREF BLUE = 0x00FF0000;
constexpr uint32_t SHAPE_NONE = 2;  // draws nothing in small sizes

struct Preview {
    RECT area;
    RECT box;  // the shape's
    int width, height;
    bool whiteMode;
};

static void drawLine(HDC dc, int x1, int y1, int x2, int y2)
{
    MoveToEx(dc, x1, y1, nullptr);
    LineTo(dc, x2, y2);
}

// A one-pixel brush: a cross with a gap instead of a dot that nobody would see. The left and top arms
// end one pixel before the centre, the right and bottom arms start two after it.
static void drawCross(HDC dc, int x, int y)
{
    SelectObject(dc, GetStockObject(BLACK_PEN));
    drawLine(dc, x, y - 8, x, y - 1);
    drawLine(dc, x - 8, y, x - 1, y);
    drawLine(dc, x + 2, y, x + 8, y);
    drawLine(dc, x, y + 2, x, y + 8);
}

static void drawThinBrush(HDC dc, const Preview& p)
{
    if (p.whiteMode) FillRect(dc, &p.area, (HBRUSH)GetStockObject(WHITE_BRUSH));
    FillRect(dc, &p.box, (HBRUSH)GetStockObject(DC_BRUSH));
}

// The outline brush works on outlines, so it is shown as one.
static void drawCircleOutline(HDC dc, const RECT& box)
{
    SelectObject(dc, GetStockObject(DC_PEN));
    SetDCPenColor(dc, session->paintColour == WHITE ? BLUE : session->paintColour);
    Arc(dc, box.left, box.top, box.right, box.bottom, box.left, box.top, box.left, box.top);
}

static void drawShape(HDC dc, const Preview& p)
{
    const uint32_t shape = session->brushShape;
    if (p.width == 1 && p.height == 1 && shape != SHAPE_NONE) {
        drawCross(dc, p.box.left, p.box.top);
    } else if ((p.width < 3 || p.height < 3) && shape != SHAPE_NONE) {
        drawThinBrush(dc, p);
    } else if (shape == SHAPE_RECTANGLE) {
        Rectangle(dc, p.box.left, p.box.top, p.box.right, p.box.bottom);
    } else if (shape == SHAPE_CIRCLE && session->currentTool == TOOL_OUTLINE_BRUSH) {
        drawCircleOutline(dc, p.box);
    } else if (shape == SHAPE_CIRCLE) {
        Ellipse(dc, p.box.left, p.box.top, p.box.right, p.box.bottom);
    }
}

void drawBrushPreview(HDC dc, const RECT& area, int width, int height, int paletteFlag)
{
    const bool white = session->paintColour == WHITE;
    session->previewBackground = white ? LIGHT_GREY : WHITE;
    const int left = area.left + (area.right - area.left - width) / 2;
    const int top = area.top + (area.bottom - area.top - height) / 2;
    const Preview preview = {area, {left, top, left + width, top + height}, width, height, paletteFlag && white};

    const int saved = SaveDC(dc);
    SetMapMode(dc, MM_TEXT);
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    SetDCBrushColor(dc, preview.whiteMode ? WHITE : session->previewBackground);
    FillRect(dc, &area, (HBRUSH)GetStockObject(DC_BRUSH));
    SetDCBrushColor(dc, session->paintColour);
    SelectObject(dc, GetStockObject(DC_BRUSH));
    SelectObject(dc, GetStockObject(preview.whiteMode ? BLACK_PEN : NULL_PEN));
    drawShape(dc, preview);
    RestoreDC(dc, saved);
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
