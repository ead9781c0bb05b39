#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "image/bitmap_display.h"
#include "image/packed_bitmap.h"
#include "tests/reference/bitmap_reference.h"

constexpr COLORREF UNTOUCHED = RGB(0, 128, 255);

static HGLOBAL packed(const reference::Picture& image)
{
    HGLOBAL handle = createBitmap(image.width, image.height, 24);
    const std::vector<uint8_t> rows = storedRows(image, 0);
    memcpy(lockBitmapBits(handle), rows.data(), rows.size());
    unlockBitmap(handle);
    return handle;
}

static COLORREF colourOf(reference::Pixel p)
{
    return RGB(p.red, p.green, p.blue);
}

// A 32-bit surface in memory, filled with the untouched colour, and an image to draw on it.
class DisplayTest : public testing::Test {
protected:
    static const int surfaceSize = 32;

    void SetUp() override
    {
        dc = CreateCompatibleDC(nullptr);
        BITMAPINFO info = {};
        initBitmapHeader(&info.bmiHeader, surfaceSize, surfaceSize, 32);
        void* bits;
        surface = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        oldSurface = SelectObject(dc, surface);
        fillWith(dc, surfaceSize, surfaceSize);
        std::mt19937 random(31);
        picture = randomReference(random, 7, 5);
        image = packed(picture);
    }

    void TearDown() override
    {
        EXPECT_EQ(0u, GlobalFlags(image) & GMEM_LOCKCOUNT);
        GlobalFree(image);
        SelectObject(dc, oldSurface);
        DeleteObject(surface);
        DeleteDC(dc);
    }

    static void fillWith(HDC target, int width, int height)
    {
        const RECT all = {0, 0, width, height};
        HBRUSH brush = CreateSolidBrush(UNTOUCHED);
        FillRect(target, &all, brush);
        DeleteObject(brush);
    }

    HDC dc = nullptr;
    HBITMAP surface = nullptr;
    HGDIOBJ oldSurface = nullptr;
    reference::Picture picture{1, 1};
    HGLOBAL image = nullptr;
};

TEST_F(DisplayTest, DrawsOneToOneAtEqualSize)
{
    const RECT place = {3, 4, 10, 9};
    drawBitmap(dc, image, &place, SRCCOPY);
    for (int y = 0; y < surfaceSize; ++y) {
        for (int x = 0; x < surfaceSize; ++x) {
            const bool inside = x >= 3 && x < 10 && y >= 4 && y < 9;
            EXPECT_EQ(inside ? colourOf(picture.at(x - 3, y - 4)) : UNTOUCHED, GetPixel(dc, x, y)) << x << ' ' << y;
        }
    }
}

TEST_F(DisplayTest, StretchesWithoutAveraging)
{
    const RECT place = {0, 0, 21, 15};
    drawBitmap(dc, image, &place, SRCCOPY);
    for (int y = 0; y < 15; ++y) {
        for (int x = 0; x < 21; ++x)
            EXPECT_EQ(colourOf(picture.at(x / 3, y / 3)), GetPixel(dc, x, y));
    }
}

TEST_F(DisplayTest, UsesTheRasterOperation)
{
    const RECT place = {0, 0, 7, 5};
    drawBitmap(dc, image, &place, SRCINVERT);
    EXPECT_EQ(UNTOUCHED ^ colourOf(picture.at(2, 3)), GetPixel(dc, 2, 3));
    drawBitmap(dc, image, &place, SRCINVERT);
    EXPECT_EQ(UNTOUCHED, GetPixel(dc, 2, 3));
}

TEST_F(DisplayTest, RestoresTheStretchMode)
{
    SetStretchBltMode(dc, BLACKONWHITE);
    const RECT place = {0, 0, 3, 3};
    drawBitmap(dc, image, &place, SRCCOPY);
    EXPECT_EQ(BLACKONWHITE, GetStretchBltMode(dc));
}

TEST_F(DisplayTest, DrawsNothingForBlocksWithoutTheirRows)
{
    const RECT place = {0, 0, 32, 32};
    drawBitmap(dc, nullptr, &place, SRCCOPY);
    HGLOBAL bare = createBitmap(4, 4, 8);  // no colour table, which GDI would look for behind the header
    drawBitmap(dc, bare, &place, SRCCOPY);
    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(bare);
    for (WORD bitCount : {(WORD)0, (WORD)24, (WORD)32}) {
        header->biBitCount = bitCount;
        header->biHeight = 4000;
        drawBitmap(dc, bare, &place, SRCCOPY);
    }
    GlobalUnlock(bare);
    EXPECT_EQ(0u, GlobalFlags(bare) & GMEM_LOCKCOUNT);
    GlobalFree(bare);
    EXPECT_EQ(UNTOUCHED, GetPixel(dc, 0, 0));
    EXPECT_EQ(UNTOUCHED, GetPixel(dc, 31, 31));
}

// Adds a window that stands for the host dialog; the canvas paint DC is the memory DC, mapped the way the canvas is.
class PaintTest : public DisplayTest {
protected:
    static const int clientSize = 120;

    // One window for all the tests: showing it can take seconds.
    static void SetUpTestSuite()
    {
        window = CreateWindowExA(WS_EX_TOPMOST, "STATIC", "", WS_POPUP | WS_VISIBLE, 40, 40, clientSize, clientSize,
                                 nullptr, nullptr, nullptr, nullptr);
        pumpMessages();
    }
    static void TearDownTestSuite() { DestroyWindow(window); }

    void SetUp() override
    {
        DisplayTest::SetUp();
        ASSERT_NE(nullptr, window);
        windowDC = GetDC(window);
        fillWith(windowDC, clientSize, clientSize);
    }

    void TearDown() override
    {
        ReleaseDC(window, windowDC);
        DisplayTest::TearDown();
    }

    static void pumpMessages()
    {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&msg);
    }

    void showAt(int clientWidth, int clientHeight)
    {
        SetMapMode(dc, MM_ANISOTROPIC);
        SetWindowExtEx(dc, picture.width, picture.height, nullptr);
        SetViewportExtEx(dc, clientWidth, clientHeight, nullptr);
    }

    void paint(RECT rect) { paintImageRect(window, dc, image, &rect); }

    COLORREF shown(int x, int y) { return GetPixel(windowDC, x, y); }

    // The picture at (x, y), black outside it.
    COLORREF expectedAt(int x, int y)
    {
        const bool inside = x >= 0 && y >= 0 && x < picture.width && y < picture.height;
        return inside ? colourOf(picture.at(x, y)) : RGB(0, 0, 0);
    }

    // At one to one: the rectangle shows the picture or black, everything else is as it was.
    void expectPaintedOnly(RECT rect)
    {
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 20; ++x) {
                const bool painted = x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
                EXPECT_EQ(painted ? expectedAt(x, y) : UNTOUCHED, shown(x, y)) << x << ' ' << y;
            }
        }
    }

    static HWND window;
    HDC windowDC = nullptr;
};

HWND PaintTest::window = nullptr;

TEST_F(PaintTest, CopiesOneToOneAtEqualSize)
{
    showAt(7, 5);
    paint({0, 0, 7, 5});
    expectPaintedOnly({0, 0, 7, 5});
}

TEST_F(PaintTest, PaintsOnlyTheRectangle)
{
    showAt(7, 5);
    paint({2, 1, 5, 4});
    expectPaintedOnly({2, 1, 5, 4});
}

TEST_F(PaintTest, IsBlackPastTheRightAndBottomEdge)
{
    showAt(7, 5);
    paint({4, 3, 9, 8});
    expectPaintedOnly({4, 3, 9, 8});
}

TEST_F(PaintTest, ARectangleLargerThanTheImageIsNotStretched)
{
    showAt(7, 5);
    paint({-2, -2, 12, 11});
    expectPaintedOnly({-2, -2, 12, 11});
}

TEST_F(PaintTest, IsBlackOutsideTheImage)
{
    showAt(7, 5);
    paint({8, 6, 10, 9});
    expectPaintedOnly({8, 6, 10, 9});
}

TEST_F(PaintTest, EnlargesEachPixel)
{
    showAt(70, 50);
    paint({1, 1, 4, 3});
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 80; ++x) {
            const bool painted = x >= 10 && x < 40 && y >= 10 && y < 30;
            EXPECT_EQ(painted ? expectedAt(x / 10, y / 10) : UNTOUCHED, shown(x, y)) << x << ' ' << y;
        }
    }
}

TEST_F(PaintTest, PartialRepaintOnTheScaledGridAgreesWithAFullOne)
{
    GlobalFree(image);
    std::mt19937 random(32);
    picture = randomReference(random, 400, 320);
    image = packed(picture);
    showAt(100, 80);
    paint({0, 0, 400, 320});
    std::vector<COLORREF> full;
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 100; ++x)
            full.push_back(shown(x, y));
    }
    fillWith(windowDC, clientSize, clientSize);
    paint({40, 80, 120, 160});
    for (int y = 20; y < 40; ++y) {
        for (int x = 10; x < 30; ++x)
            EXPECT_EQ(full[(size_t)y * 100 + x], shown(x, y));
    }
    EXPECT_EQ(UNTOUCHED, shown(9, 30));
    EXPECT_EQ(UNTOUCHED, shown(30, 30));
}

// Scales that do not come out even: whatever part is painted, it shows what a full repaint shows there.
TEST_F(PaintTest, PartialRepaintAtAnyScaleAgreesWithAFullOne)
{
    const SIZE scales[][2] = {{{316, 251}, {117, 93}}, {{43, 35}, {99, 81}}, {{113, 91}, {112, 90}}};
    std::mt19937 random(33);
    for (const SIZE(&scale)[2] : scales) {
        const int shownWidth = scale[1].cx, shownHeight = scale[1].cy;
        GlobalFree(image);
        picture = randomReference(random, scale[0].cx, scale[0].cy);
        image = packed(picture);
        showAt(shownWidth, shownHeight);
        paint({0, 0, picture.width, picture.height});
        std::vector<COLORREF> full;
        for (int y = 0; y < shownHeight; ++y) {
            for (int x = 0; x < shownWidth; ++x)
                full.push_back(shown(x, y));
        }
        int parts = 0;
        for (int left = 0; left < picture.width - 20; left += picture.width / 6) {
            const int top = left * picture.height / picture.width;
            fillWith(windowDC, clientSize, clientSize);
            paint({left, top, left + 20, top + 17});
            int painted = 0;
            for (int y = 0; y < shownHeight; ++y) {
                for (int x = 0; x < shownWidth; ++x) {
                    if (shown(x, y) == UNTOUCHED) continue;
                    ASSERT_EQ(full[(size_t)(y * shownWidth + x)], shown(x, y)) << x << ' ' << y;
                    painted++;
                }
            }
            EXPECT_GE(painted, 6 * 5);
            parts++;
        }
        EXPECT_GE(parts, 4);
    }
}

static void invertHalf(HDC dc)
{
    PatBlt(dc, 30, 0, 200, 400, DSTINVERT);
}

// The way through memory shows what the system's own stretch of the whole image shows in a bitmap like the screen.
TEST_F(PaintTest, ShowsTheSystemsOwnStretchAtAnyScale)
{
    const SIZE scales[][2] = {
        {{316, 251}, {117, 93}}, {{43, 35}, {99, 81}}, {{113, 91}, {112, 90}}, {{60, 7}, {61, 8}}};
    std::mt19937 random(34);
    for (const SIZE(&scale)[2] : scales) {
        const int width = scale[1].cx, height = scale[1].cy;
        GlobalFree(image);
        picture = randomReference(random, scale[0].cx, scale[0].cy);
        image = packed(picture);
        showAt(width, height);
        const RECT all = {0, 0, picture.width, picture.height}, there = {0, 0, width, height};
        paintImageRect(window, dc, image, &all, invertHalf);
        const HDC own = CreateCompatibleDC(windowDC);
        const HBITMAP bitmap = CreateCompatibleBitmap(windowDC, width, height);
        const HGDIOBJ old = SelectObject(own, bitmap);
        drawBitmap(own, image, &there, SRCCOPY);
        SetMapMode(own, MM_ANISOTROPIC);
        SetWindowExtEx(own, picture.width, picture.height, nullptr);
        SetViewportExtEx(own, width, height, nullptr);
        invertHalf(own);
        SetMapMode(own, MM_TEXT);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(GetPixel(own, x, y), shown(x, y)) << width << ": " << x << ' ' << y;
        SelectObject(own, old);
        DeleteObject(bitmap);
        DeleteDC(own);
    }
}

// Only 24-bit images can be cut, so the others are black.
TEST_F(PaintTest, ImagesOfOtherDepthsAreBlack)
{
    GlobalFree(image);
    image = createBitmap(7, 5, 32);
    memset(lockBitmapBits(image), 0xFF, 7 * 5 * 4);
    unlockBitmap(image);
    showAt(7, 5);
    paint({0, 0, 7, 5});
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 7; ++x)
            EXPECT_EQ(RGB(0, 0, 0), shown(x, y));
    }
    EXPECT_EQ(UNTOUCHED, shown(7, 4));
}

TEST_F(PaintTest, PaintsNothingForANullImageOrAnEmptyRectangle)
{
    showAt(7, 5);
    const RECT all = {0, 0, 7, 5};
    paintImageRect(window, dc, nullptr, &all);
    paint({3, 3, 3, 3});
    paint({INT_MIN, 0, INT_MAX, 0});
    expectPaintedOnly({0, 0, 0, 0});
}

// Handles are indexes into tables whose free entries are used again. The highest of a handful of new ones
// rises by what was not given back; a single new one could sit in an old hole.
struct HandleLevels {
    ptrdiff_t gdi, memory;
};

static HandleLevels handleLevels()
{
    const int handful = 64;
    HPEN pens[handful];
    HGLOBAL blocks[handful];
    HandleLevels levels = {0, 0};
    for (int n = 0; n < handful; ++n) {
        pens[n] = CreatePen(PS_SOLID, 1, 0);
        blocks[n] = GlobalAlloc(GMEM_MOVEABLE, 1);
        levels.gdi = std::max(levels.gdi, (ptrdiff_t)LOWORD((ULONG_PTR)pens[n]));
        levels.memory = std::max(levels.memory, (ptrdiff_t)blocks[n] / (2 * (ptrdiff_t)sizeof(void*)));
    }
    for (int n = 0; n < handful; ++n) {
        DeleteObject(pens[n]);
        GlobalFree(blocks[n]);
    }
    return levels;
}

TEST_F(PaintTest, LeavesNothingBehind)
{
    showAt(7, 5);
    SetStretchBltMode(dc, BLACKONWHITE);
    paint({0, 0, 7, 5});
    const HandleLevels before = handleLevels();
    const int turns = 1000;
    for (int n = 0; n < turns; ++n)
        paint({0, 0, 3, 3});
    const HandleLevels after = handleLevels();
    EXPECT_LT(std::abs(after.gdi - before.gdi), turns / 2);
    EXPECT_LT(std::abs(after.memory - before.memory), turns / 2);
    EXPECT_EQ(BLACKONWHITE, GetStretchBltMode(dc));
    paint({0, 0, 7, 5});
    expectPaintedOnly({0, 0, 7, 5});
}

// What the overlay saw: the device context it drew on, and what the window showed meanwhile.
static DWORD overlayTarget;
static COLORREF shownBeforeOverlay;
static HDC watchedDC;

static void drawGreenCell(HDC dc)
{
    overlayTarget = GetObjectType(dc);
    shownBeforeOverlay = GetPixel(watchedDC, 6, 8);
    const RECT cell = {3, 4, 4, 5};  // image pixels
    const HBRUSH green = CreateSolidBrush(RGB(0, 255, 0));
    FillRect(dc, &cell, green);
    DeleteObject(green);
}

// Image and overlay come to the screen together: otherwise typed text flickers.
TEST_F(PaintTest, OverlayIsDrawnOffScreenInImagePixels)
{
    showAt(picture.width * 2, picture.height * 2);
    watchedDC = windowDC;
    const RECT part = {2, 3, 6, 7};
    paintImageRect(window, dc, image, &part, drawGreenCell);
    EXPECT_EQ((DWORD)OBJ_MEMDC, overlayTarget);
    EXPECT_EQ(UNTOUCHED, shownBeforeOverlay);
    EXPECT_EQ(RGB(0, 255, 0), shown(6, 8));
    EXPECT_EQ(RGB(0, 255, 0), shown(7, 9));
    EXPECT_EQ(expectedAt(2, 4), shown(5, 8));
    EXPECT_EQ(expectedAt(4, 4), shown(8, 8));
    EXPECT_EQ(UNTOUCHED, shown(3, 8));
}
