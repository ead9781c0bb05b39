#include "session/frame.h"

#include <cstddef>

constexpr COLORREF BLACK = 0x00000000;
constexpr COLORREF DARK_GREY = 0x00808080;
constexpr COLORREF LIGHT_GREY = 0x00C0C0C0;
constexpr COLORREF WHITE = 0x00FFFFFF;

struct FrameSizes {
    int width, height;    // the window
    int fx, fy, caption;  // SM_CXFRAME, SM_CYFRAME, SM_CYCAPTION
};

static void fillBorder(HDC dc, HBRUSH brush, const FrameSizes& m)
{
    const RECT strips[] = {
        {0, 0, m.width, m.fy - 1},
        {0, 0, m.fx - 1, m.height},
        {0, m.height - m.fy + 1, m.width, m.height},
        {m.width - m.fy + 1, 0, m.width, m.height},  // the right strip is fy wide, too: the frame is seen so
    };
    for (const RECT& strip : strips)
        FillRect(dc, &strip, brush);
}

static void drawPath(HDC dc, COLORREF colour, const POINT* points, int count)
{
    SetDCPenColor(dc, colour);
    Polyline(dc, points, count);
}

template <size_t count>
static void drawPath(HDC dc, COLORREF colour, const POINT (&points)[count])
{
    drawPath(dc, colour, points, (int)count);
}

static void drawEdges(HDC dc, const FrameSizes& m)
{
    const int w = m.width, h = m.height, fx = m.fx, fy = m.fy;
    const POINT outline[] = {{0, h - 1}, {w - 1, h - 1}, {w - 1, 0}, {0, 0}, {0, h}};
    const POINT outerDark[] = {{1, h - 2}, {w - 2, h - 2}, {w - 2, 1}};
    const POINT outerLight[] = {{w - 2, 1}, {1, 1}, {1, h - 2}};
    const POINT innerLight[] = {{fx, h - fy}, {w - fx, h - fy}, {w - fx, fy - 1}};
    const POINT innerDark[] = {{w - fx, fy - 1}, {fx - 1, fy - 1}, {fx - 1, h - fy}};
    drawPath(dc, BLACK, outline);
    drawPath(dc, DARK_GREY, outerDark);
    drawPath(dc, WHITE, outerLight);
    drawPath(dc, WHITE, innerLight);
    drawPath(dc, DARK_GREY, innerDark);
}

// The eight notch segments, each moved by `shift` across its own direction.
static void drawNotches(HDC dc, const FrameSizes& m, COLORREF colour, int shift)
{
    const int w = m.width, h = m.height;
    const int g = m.caption + m.fy, g2 = m.caption + m.fx;
    const POINT segments[][2] = {
        {{0, g + shift}, {m.fx, g + shift}},
        {{g2 + shift, 0}, {g2 + shift, m.fy}},
        {{w, g + shift}, {w - m.fx - 1, g + shift}},
        {{w - g2 + shift, 0}, {w - g2 + shift, m.fy}},
        {{0, h - g + shift}, {m.fx, h - g + shift}},
        {{g2 + shift, h}, {g2 + shift, h - m.fy - 1}},
        {{w, h - g + shift}, {w - m.fx - 1, h - g + shift}},
        {{w - g2 + shift, h}, {w - g2 + shift, h - m.fy - 1}},
    };
    for (const auto& segment : segments)
        drawPath(dc, colour, segment);
}

static void paintBorder(HWND dialog)
{
    const HDC dc = GetWindowDC(dialog);
    if (!dc) return;
    RECT window = {};
    GetWindowRect(dialog, &window);
    const FrameSizes m = {window.right - window.left, window.bottom - window.top, GetSystemMetrics(SM_CXFRAME),
                          GetSystemMetrics(SM_CYFRAME), GetSystemMetrics(SM_CYCAPTION)};
    // The stock pen and brush with a settable colour: nothing to create, nothing to delete.
    const HGDIOBJ oldPen = SelectObject(dc, GetStockObject(DC_PEN));
    SetDCBrushColor(dc, LIGHT_GREY);
    fillBorder(dc, (HBRUSH)GetStockObject(DC_BRUSH), m);
    drawEdges(dc, m);
    drawNotches(dc, m, DARK_GREY, 0);
    drawNotches(dc, m, WHITE, 1);
    SelectObject(dc, oldPen);
    ReleaseDC(dialog, dc);
}

void activateFrame(HWND dialog, WPARAM active)
{
    DefWindowProcW(dialog, WM_NCACTIVATE, active, 0);
    paintBorder(dialog);
}

void paintFrame(HWND dialog)
{
    SendMessageW(dialog, WM_NCACTIVATE, GetActiveWindow() == dialog, 0);  // answered by activateFrame
}
