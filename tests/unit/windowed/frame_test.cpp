// The editing window's border, pixel by pixel, on a real window.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <vector>

#include "session/frame.h"
#include "session/ground/module_state.h"

constexpr COLORREF UNTOUCHED = CLR_INVALID;
constexpr COLORREF BLACK = 0, DARK = 0x808080, LIGHT = 0xC0C0C0, WHITE = 0xFFFFFF;

// The border as the rules give it, drawn cell by cell.
struct ExpectedFrame {
    int width, height;
    std::vector<COLORREF> cells;

    ExpectedFrame(int w, int h) : width(w), height(h), cells((size_t)w * h, UNTOUCHED) {}

    void set(int x, int y, COLORREF colour)
    {
        if (x >= 0 && y >= 0 && x < width && y < height) cells[(size_t)y * width + x] = colour;
    }
    void fill(int left, int top, int right, int bottom)
    {
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x)
                set(x, y, LIGHT);
    }
    // Horizontal or vertical, without its end point.
    void line(int x1, int y1, int x2, int y2, COLORREF colour)
    {
        const int dx = (x2 > x1) - (x2 < x1), dy = (y2 > y1) - (y2 < y1);
        for (int x = x1, y = y1; x != x2 || y != y2; x += dx, y += dy)
            set(x, y, colour);
    }
    void notches(int g, int g2, int fx, int fy, COLORREF colour, int shift)
    {
        const int w = width, h = height, s = shift;
        line(0, g + s, fx, g + s, colour);
        line(g2 + s, 0, g2 + s, fy, colour);
        line(w, g + s, w - fx - 1, g + s, colour);
        line(w - g2 + s, 0, w - g2 + s, fy, colour);
        line(0, h - g + s, fx, h - g + s, colour);
        line(g2 + s, h, g2 + s, h - fy - 1, colour);
        line(w, h - g + s, w - fx - 1, h - g + s, colour);
        line(w - g2 + s, h, w - g2 + s, h - fy - 1, colour);
    }
};

static ExpectedFrame expectedFrame(int w, int h)
{
    const int fx = GetSystemMetrics(SM_CXFRAME), fy = GetSystemMetrics(SM_CYFRAME);
    const int caption = GetSystemMetrics(SM_CYCAPTION);
    ExpectedFrame f(w, h);
    f.fill(0, 0, w, fy - 1);
    f.fill(0, 0, fx - 1, h);
    f.fill(0, h - fy + 1, w, h);
    f.fill(w - fy + 1, 0, w, h);
    f.line(0, h - 1, w - 1, h - 1, BLACK);
    f.line(w - 1, h - 1, w - 1, 0, BLACK);
    f.line(w - 1, 0, 0, 0, BLACK);
    f.line(0, 0, 0, h, BLACK);
    f.line(1, h - 2, w - 2, h - 2, DARK);
    f.line(w - 2, h - 2, w - 2, 1, DARK);
    f.line(w - 2, 1, 1, 1, WHITE);
    f.line(1, 1, 1, h - 2, WHITE);
    f.line(fx, h - fy, w - fx, h - fy, WHITE);
    f.line(w - fx, h - fy, w - fx, fy - 1, WHITE);
    f.line(w - fx, fy - 1, fx - 1, fy - 1, DARK);
    f.line(fx - 1, fy - 1, fx - 1, h - fy, DARK);
    f.notches(caption + fy, caption + fx, fx, fy, DARK, 0);
    f.notches(caption + fy, caption + fx, fx, fy, WHITE, 1);
    return f;
}

static LRESULT CALLBACK framedProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCPAINT) {
        paintFrame(window);
        return 0;
    }
    if (message == WM_NCACTIVATE) {
        activateFrame(window, wParam);
        return TRUE;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

// Number of cells of the rules' frame that the window shows otherwise.
static int differences(HWND window)
{
    RECT r;
    GetWindowRect(window, &r);
    const ExpectedFrame expected = expectedFrame(r.right - r.left, r.bottom - r.top);
    const HDC dc = GetWindowDC(window);
    int wrong = 0;
    for (int y = 0; y < expected.height; ++y) {
        for (int x = 0; x < expected.width; ++x) {
            const COLORREF wanted = expected.cells[(size_t)y * expected.width + x];
            if (wanted != UNTOUCHED && GetPixel(dc, x, y) != wanted) ++wrong;
        }
    }
    ReleaseDC(window, dc);
    return wrong;
}

struct FrameWindow : testing::Test {
    HWND window = nullptr;

    void SetUp() override
    {
        WNDCLASSA framed = {};
        framed.lpfnWndProc = framedProc;
        framed.hInstance = GetModuleHandleA(nullptr);
        framed.hbrBackground = (HBRUSH)GetStockObject(WHITE_BRUSH);
        framed.lpszClassName = "FramedWindow";
        RegisterClassA(&framed);
        window =
            CreateWindowExA(WS_EX_TOPMOST, "FramedWindow", "frame", WS_POPUP | WS_CAPTION | WS_THICKFRAME | WS_VISIBLE,
                            60, 50, 180, 140, nullptr, nullptr, framed.hInstance, nullptr);
        ASSERT_NE(nullptr, window);
        SendMessageA(window, WM_NCPAINT, 1, 0);
    }
    void TearDown() override
    {
        DestroyWindow(window);
        UnregisterClassA("FramedWindow", GetModuleHandleA(nullptr));
    }
};

TEST_F(FrameWindow, IsDrawnByTheRules)
{
    EXPECT_EQ(0, differences(window));
}

TEST_F(FrameWindow, LooksAlikeWhetherActiveOrNot)
{
    SendMessageA(window, WM_NCACTIVATE, FALSE, 0);
    EXPECT_EQ(0, differences(window));
    SendMessageA(window, WM_NCACTIVATE, TRUE, 0);
    EXPECT_EQ(0, differences(window));
}

TEST_F(FrameWindow, NotchesFollowTheCorners)
{
    SetWindowPos(window, nullptr, 0, 0, 260, 200, SWP_NOMOVE | SWP_NOZORDER);
    SendMessageA(window, WM_NCPAINT, 1, 0);
    EXPECT_EQ(0, differences(window));
}
