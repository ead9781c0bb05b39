// The editing window's answers to messages that no mouse or key of the other tests brings about.
#include "tests/session/session_fixture.h"

struct DialogMessages : SessionTest {
    HANDLE property(int key) { return GetPropA(host.dialog, MAKEINTATOM(key)); }

    // On the session's thread only.
    void eraseBackground(HDC dc) { SendMessageA(host.dialog, WM_ERASEBKGND, (WPARAM)dc, 0); }
};

constexpr COLORREF BLUE = RGB(0, 0, 255);

// A picture in memory, all blue, clipped to the rectangle (10, 20) .. (40, 50).
struct ClippedPicture {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ old;

    ClippedPicture()
    {
        const HDC screen = GetDC(nullptr);
        dc = CreateCompatibleDC(screen);
        bitmap = CreateCompatibleBitmap(screen, 80, 80);
        ReleaseDC(nullptr, screen);
        old = SelectObject(dc, bitmap);
        const RECT all = {0, 0, 80, 80};
        SetDCBrushColor(dc, BLUE);
        FillRect(dc, &all, (HBRUSH)GetStockObject(DC_BRUSH));
        IntersectClipRect(dc, 10, 20, 40, 50);
    }

    ~ClippedPicture()
    {
        SelectObject(dc, old);
        DeleteObject(bitmap);
        DeleteDC(dc);
    }

    COLORREF at(int x, int y)
    {
        SelectClipRgn(dc, nullptr);
        return GetPixel(dc, x, y);
    }
};

TEST_F(DialogMessages, PropertiesHoldImageCanvasAndProportions)
{
    usePhoto(300, 200, 450, 300);
    ASSERT_TRUE(open());
    EXPECT_EQ((HANDLE)450, property(5));
    EXPECT_EQ((HANDLE)300, property(6));
    EXPECT_EQ((HANDLE)photo.block, property(7));
    EXPECT_EQ((HANDLE)host.canvas, property(10));
    EXPECT_EQ(nullptr, property(100));
    SetWindowPos(host.dialog, nullptr, 0, 0, 640, 400, SWP_NOMOVE | SWP_NOZORDER);
    ASSERT_TRUE(settle(&host));
    EXPECT_EQ((HANDLE)450, property(5)) << "the proportions of the start stay";
    EXPECT_EQ((HANDLE)300, property(6));
}

// The background is the canvas's: it is not erased, and the canvas repaints one pixel more around it.
TEST_F(DialogMessages, ErasingLeavesTheWorkToTheCanvas)
{
    ASSERT_TRUE(open());
    ClippedPicture picture;
    RECT invalid = {};
    runOnHost(&host, [&] {
        ValidateRect(host.canvas, nullptr);
        eraseBackground(picture.dc);
        // The canvas's mapping makes no difference: the client area has the picture's own size.
        GetUpdateRect(host.canvas, &invalid, FALSE);
    });
    const RECT expected = {9, 19, 41, 51};
    EXPECT_TRUE(EqualRect(&expected, &invalid))
        << invalid.left << ' ' << invalid.top << ' ' << invalid.right << ' ' << invalid.bottom;
    EXPECT_EQ(BLUE, picture.at(20, 30));
}

TEST_F(DialogMessages, ErasesInBlackWithoutAnImage)
{
    ASSERT_TRUE(open());
    ClippedPicture picture;
    runOnHost(&host, [&] {
        const HANDLE image = RemovePropA(host.dialog, MAKEINTATOM(7));
        eraseBackground(picture.dc);
        SetPropA(host.dialog, MAKEINTATOM(7), image);
    });
    EXPECT_EQ(0u, picture.at(10, 20));
    EXPECT_EQ(0u, picture.at(39, 49));
    EXPECT_EQ(BLUE, picture.at(9, 20));
    EXPECT_EQ(BLUE, picture.at(40, 49));
}

TEST_F(DialogMessages, ChangesOfTheColourPaletteGoToTheCanvas)
{
    ASSERT_TRUE(open());
    for (UINT message : {WM_QUERYNEWPALETTE, WM_PALETTECHANGED}) {
        const size_t first = seenCount();
        runOnHost(&host, [&] { EXPECT_EQ(1, SendMessageA(host.dialog, message, (WPARAM)host.parent, 0)); });
        EXPECT_EQ(1, countSeen(first, host.canvas, message));
    }
}

// At a new size the whole canvas is stale: the scale of all its pixels has changed.
TEST_F(DialogMessages, ANewSizeInvalidatesTheWholeCanvas)
{
    ASSERT_TRUE(open());
    RECT invalid = {};
    runOnHost(&host, [&] {
        ValidateRect(host.canvas, nullptr);
        SendMessageA(host.dialog, WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 200));
        GetUpdateRect(host.canvas, &invalid, FALSE);
    });
    const RECT expected = {0, 0, 300, 200};
    EXPECT_TRUE(EqualRect(&expected, &invalid)) << invalid.right << ' ' << invalid.bottom;
}
