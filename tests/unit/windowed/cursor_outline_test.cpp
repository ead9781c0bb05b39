// The brush's outline at the pointer, with real windows: what is on the screen before it comes, and
// after it has gone.
#include <algorithm>

#include "canvas/view/canvas_coordinates.h"
#include "canvas/view/cursor_outline.h"
#include "image/bitmap_locks.h"
#include "image/bitmap_display.h"
#include "tests/session/pointer_guard.h"
#include "tests/unit/windowed/client_screen.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/brush/brush_preview.h"

using reference::Picture;

using Screen = std::vector<uint32_t>;

struct CursorOutline : SessionFixture {
    PointerOfTest pointer;
    Dice dice = {1};
    SIZE client = {};

    // The whole photo on the screen, the outline not yet there.
    bool start(int width, int height, SIZE size)
    {
        client = size;
        const Picture picture = randomPicture(dice, width, height);
        if (!open(picture, size, true)) return false;
        putPointer(size.cx / 2, size.cy / 2);
        return true;
    }
    void putPointer(int x, int y)
    {
        POINT at = {x, y};
        ClientToScreen(host, &at);
        SetCursorPos(at.x, at.y);
    }
    void enter(int x, int y)
    {
        putPointer(x, y);
        while (session->overlayHideCount < 1)
            showOutline(session->canvasWindow);
        moveTo(x, y);
    }
    void moveTo(int x, int y)
    {
        putPointer(x, y);
        trackOutline(session->canvasWindow);
    }
    bool picturesOnePixel() const
    {
        const RECT rect = picture();
        return rect.right - rect.left == 1 && rect.bottom - rect.top == 1;
    }
    void leave() { hideOutline(session->canvasWindow); }
    void brush(int width, int height, COLORREF colour = RGB(250, 10, 20), uint32_t shape = SHAPE_CIRCLE)
    {
        session->currentTool = TOOL_BRUSH;
        session->brushWidth = (uint32_t)width;
        session->brushHeight = (uint32_t)height;
        session->brushShape = shape;
        session->paintColour = colour;
        rebuildOutline(session->canvasWindow, 1);
    }
    void repaint(const RECT* part = nullptr)
    {
        InvalidateRect(session->canvasWindow, part, FALSE);
        UpdateWindow(session->canvasWindow);
    }
    Screen screen() const;
    // Pixels that differ, none of them outside the rectangle.
    int changedInside(const Screen& before, const RECT& rect) const;
    // Where the picture is, and where it should be.
    RECT picture() const;
    SIZE wholePicture() const;
    bool centredOn(int x, int y) const;
};

// The unused byte of a screen pixel says nothing.
Screen CursorOutline::screen() const
{
    Screen pixels = clientScreen(session->canvasWindow);
    for (uint32_t& pixel : pixels)
        pixel &= 0xFFFFFF;
    return pixels;
}

int CursorOutline::changedInside(const Screen& before, const RECT& rect) const
{
    const Screen now = screen();
    int changed = 0;
    for (int y = 0; y < client.cy; ++y)
        for (int x = 0; x < client.cx; ++x) {
            const size_t k = (size_t)y * client.cx + x;
            if (now[k] == before[k]) continue;
            if (!PtInRect(&rect, {x, y})) return -1;
            ++changed;
        }
    return changed;
}

RECT CursorOutline::picture() const
{
    BITMAP info = {};
    GetObjectA(session->outlineBitmap, sizeof info, &info);
    const POINT corner = session->outlinePos;
    return {corner.x, corner.y, corner.x + info.bmWidth, corner.y + info.bmHeight};
}

// Of which the bitmap holds no more than the canvas can show.
SIZE CursorOutline::wholePicture() const
{
    const RECT brush =
        deviceRectOf(session->canvasWindow, {0, 0, (LONG)session->brushWidth, (LONG)session->brushHeight});
    return {std::max(brush.right, 1L), std::max(brush.bottom, 1L)};
}

bool CursorOutline::centredOn(int x, int y) const
{
    const SIZE whole = wholePicture();
    return session->outlinePos.x == x - whole.cx / 2 && session->outlinePos.y == y - whole.cy / 2;
}

struct OutlineScale {
    SIZE image, client;
};

static const OutlineScale scales[] = {{{200, 150}, {200, 150}}, {{200, 100}, {74, 37}}, {{100, 60}, {250, 150}}};
static const SIZE brushSizes[] = {{1, 1}, {3, 3}, {16, 9}, {48, 48}};

TEST_F(CursorOutline, LeavesTheScreenAsItFoundItAtEveryScaleAndSize)
{
    for (const OutlineScale& scale : scales) {
        ASSERT_TRUE(start(scale.image.cx, scale.image.cy, scale.client));
        for (const SIZE& size : brushSizes) {
            brush(size.cx, size.cy);
            const Screen before = screen();
            int x = client.cx / 2, y = client.cy / 2;
            enter(x, y);
            EXPECT_TRUE(centredOn(x, y));
            // Of the cross that stands for one pixel, nothing fits into a picture that small.
            EXPECT_EQ(changedInside(before, picture()) > 0, !picturesOnePixel()) << size.cx << " client " << client.cx;
            for (int k = 0; k < 60; ++k) {  // small steps that overlap, now and then a jump
                x = k % 7 == 6 ? dice.upTo(client.cx - 1)
                               : std::min(std::max(x + dice.between(-5, 5), 0), (int)client.cx - 1);
                y = k % 7 == 6 ? dice.upTo(client.cy - 1)
                               : std::min(std::max(y + dice.between(-5, 5), 0), (int)client.cy - 1);
                moveTo(x, y);
                ASSERT_GE(changedInside(before, picture()), 0)
                    << "a trail at move " << k << " size " << size.cx << " client " << client.cx;
            }
            leave();
            ASSERT_TRUE(before == screen()) << "size " << size.cx << "x" << size.cy << " client " << client.cx;
        }
        close();
    }
}

TEST_F(CursorOutline, SurvivesRepaintsInTheSamePlace)
{
    ASSERT_TRUE(start(200, 150, {200, 150}));
    brush(30, 30);
    const Screen before = screen();
    enter(60, 70);
    const Screen shown = screen();
    const RECT parts[] = {{0, 0, 200, 150}, {60, 70, 65, 75}, {50, 0, 70, 150}, {0, 0, 10, 10}};
    for (const RECT& part : parts) {
        for (int k = 0; k < 100 && (k == 0 || !centredOn(60, 70)); ++k) {
            putPointer(60, 70);
            repaint(&part);
        }
        EXPECT_TRUE(shown == screen()) << part.left;
    }
    moveTo(66, 71);
    leave();
    EXPECT_TRUE(before == screen());
}

TEST_F(CursorOutline, WhatWasPaintedMeanwhileIsThereWhenItHasGone)
{
    ASSERT_TRUE(start(100, 80, {250, 200}));
    brush(16, 16);
    enter(100, 100);
    {
        const LockedPixels pixels(image);
        ASSERT_TRUE(pixels);
        for (int y = 35; y < 45; ++y)
            memset(rowOf(pixels.view, y), 0x40, 100 * 3);
    }
    const RECT strip = {0, 87, 250, 113};
    repaint(&strip);
    moveTo(103, 98);
    leave();
    const Screen after = screen();
    repaint();
    EXPECT_TRUE(after == screen());
}

TEST_F(CursorOutline, BrushLargerThanTheCanvasLeavesNoTrail)
{
    ASSERT_TRUE(start(20, 14, {50, 35}));
    brush(48, 48, RGB(0, 0, 255), SHAPE_CIRCLE);
    const Screen before = screen();
    enter(25, 17);
    EXPECT_FALSE(before == screen());
    for (int k = 0; k < 80; ++k)
        moveTo(dice.upTo(49), dice.upTo(34));
    leave();
    EXPECT_TRUE(before == screen());
}

static SIZE sizeOf(HBITMAP bitmap)
{
    BITMAP info = {};
    GetObjectA(bitmap, sizeof info, &info);
    return {info.bmWidth, info.bmHeight};
}

// A brush of 16 pixels on an image of one is 10,240 pixels wide on this canvas.
TEST_F(CursorOutline, HoldsNoMoreOfALargeBrushThanTheCanvasShows)
{
    ASSERT_TRUE(start(1, 1, {640, 480}));
    brush(16, 16);
    const Screen before = screen();
    enter(320, 240);
    for (const POINT at : {POINT{0, 0}, POINT{639, 5}, POINT{320, 479}, POINT{322, 470}}) {
        moveTo(at.x, at.y);
        EXPECT_TRUE(centredOn(at.x, at.y));
        for (HBITMAP bitmap : {session->outlineBitmap, session->saveUnderBitmap}) {
            EXPECT_EQ(640, sizeOf(bitmap).cx);
            EXPECT_EQ(480, sizeOf(bitmap).cy);
        }
    }
    leave();
    EXPECT_TRUE(before == screen());
}

// The whole picture in one bitmap, whatever it costs, drawn over the screen as it was.
static Screen withWholePicture(const CursorOutline& test, const Screen& before, POINT pointer)
{
    const SIZE whole = test.wholePicture(), client = test.client;
    const RECT area = {0, 0, whole.cx, whole.cy};
    const HDC dc = GetDC(nullptr), large = CreateCompatibleDC(dc), small = CreateCompatibleDC(dc);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, client.cx, -client.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HBITMAP shown = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HBITMAP picture = CreateCompatibleBitmap(dc, whole.cx, whole.cy);
    const HGDIOBJ oldShown = SelectObject(small, shown), oldPicture = SelectObject(large, picture);
    memcpy(bits, before.data(), before.size() * sizeof before[0]);
    if (session->currentTool == TOOL_STAMP) {
        drawBitmap(large, session->maskCache, &area, SRCCOPY);
    } else {
        drawBrushPreview(large, area, whole.cx, whole.cy, 0);
    }
    GdiTransparentBlt(small, pointer.x - whole.cx / 2, pointer.y - whole.cy / 2, whole.cx, whole.cy, large, 0, 0,
                      whole.cx, whole.cy, session->previewBackground);
    GdiFlush();
    Screen result((const uint32_t*)bits, (const uint32_t*)bits + before.size());
    for (uint32_t& pixel : result)
        pixel &= 0xFFFFFF;
    SelectObject(large, oldPicture);
    SelectObject(small, oldShown);
    DeleteObject(picture);
    DeleteObject(shown);
    DeleteDC(large);
    DeleteDC(small);
    ReleaseDC(nullptr, dc);
    return result;
}

TEST_F(CursorOutline, ShowsOfALargeBrushWhatTheWholePictureWould)
{
    ASSERT_TRUE(start(14, 11, {112, 77}));
    for (uint32_t tool : {TOOL_BRUSH, TOOL_OUTLINE_BRUSH, TOOL_STAMP}) {
        session->currentTool = TOOL_NONE;
        sessionBrush({tool, SHAPE_CIRCLE, false, 20, 6, 100, {250, 10, 20}});  // 160 x 42 on the screen
        const Screen before = screen();
        if (tool == TOOL_STAMP) {
            sessionPress(7, 5);
            sessionRelease(7, 5);
        }
        enter(56, 38);
        for (int k = 0; k < 40; ++k) {
            const POINT at = {dice.upTo(111), k % 4 == 3 ? dice.upTo(76) : std::min(3 * k, 76)};
            moveTo(at.x, at.y);
            ASSERT_TRUE(screen() == withWholePicture(*this, before, at)) << "tool " << tool << " at " << at.x;
        }
        leave();
        ASSERT_TRUE(before == screen()) << "tool " << tool;
    }
}

TEST_F(CursorOutline, WhiteBrushStaysVisible)
{
    client = {80, 60};
    ASSERT_TRUE(open(plainPicture(80, 60, {0, 0, 0}), client, true));
    brush(20, 20, RGB(255, 255, 255));
    EXPECT_EQ(0x00C0C0C0u, session->previewBackground);
    enter(40, 30);
    const Screen shown = screen();
    EXPECT_EQ(0xFFFFFFu, shown[30 * 80 + 40]);
    EXPECT_EQ(0u, shown[2 * 80 + 2]);
    EXPECT_EQ(0u, shown[21 * 80 + 31]) << "the key colour is not drawn";
    brush(20, 20, RGB(255, 0, 0));
    EXPECT_EQ(0x00FFFFFFu, session->previewBackground);
    leave();
}

TEST_F(CursorOutline, ChangesOfSizeShapeAndScaleWhileShown)
{
    ASSERT_TRUE(start(120, 90, {120, 90}));
    brush(10, 10);
    const Screen before = screen();
    enter(60, 45);
    for (const SIZE& size : {SIZE{40, 40}, SIZE{1, 1}, SIZE{48, 3}, SIZE{16, 16}}) {
        brush(size.cx, size.cy, RGB(9, 200, 30), size.cx == 48 ? SHAPE_RECTANGLE : SHAPE_CIRCLE);
        ASSERT_GE(changedInside(before, picture()), 0);
        moveTo(62, 45);
        EXPECT_EQ(changedInside(before, picture()) > 0, !picturesOnePixel());
        moveTo(60, 45);
    }
    leave();
    EXPECT_TRUE(before == screen());
}

TEST_F(CursorOutline, HiddenWhileTheButtonIsDownAndBackAfterwards)
{
    ASSERT_TRUE(start(120, 90, {120, 90}));
    session->currentTool = TOOL_NONE;
    sessionBrush({TOOL_SMOOTH, 0, false, 2, 30, 100, {}});  // two columns: a dab that changes nothing
    const Screen before = screen();
    enter(60, 45);
    EXPECT_FALSE(before == screen());
    sessionPress(60, 45);
    EXPECT_TRUE(before == screen());
    putPointer(70, 50);
    sessionMove(70, 50);
    EXPECT_TRUE(before == screen());
    sessionRelease(70, 50);
    EXPECT_GT(changedInside(before, picture()), 0);
    leave();
    EXPECT_TRUE(before == screen());
}

TEST_F(CursorOutline, ShownTwiceItLeavesNoTrail)
{
    ASSERT_TRUE(start(120, 90, {120, 90}));
    brush(20, 20);
    const Screen before = screen();
    enter(60, 45);
    sessionRelease(60, 45);  // of a press that went elsewhere
    putPointer(64, 45);
    showOutline(session->canvasWindow);
    moveTo(100, 70);
    ASSERT_GE(changedInside(before, picture()), 0);
    leave();
    EXPECT_TRUE(before == screen());
}

TEST_F(CursorOutline, StampShowsThePatchItPickedUp)
{
    ASSERT_TRUE(start(120, 90, {120, 90}));
    sessionBrush({TOOL_STAMP, 1, false, 20, 20, 100, {}});
    const Screen before = screen();
    enter(30, 30);
    sessionPress(30, 30);
    sessionRelease(30, 30);
    moveTo(90, 60);
    const Screen shown = screen();
    EXPECT_EQ(before[30 * 120 + 30], shown[60 * 120 + 90]);
    EXPECT_EQ(before[25 * 120 + 24], shown[55 * 120 + 84]);
    leave();
    EXPECT_TRUE(before == screen());
}

TEST_F(CursorOutline, NothingIsDrawnAfterItWasFreed)
{
    ASSERT_TRUE(start(60, 60, {60, 60}));
    brush(20, 20);
    const Screen before = screen();
    enter(30, 30);
    leave();
    freeOutline();
    showOutline(session->canvasWindow);
    moveTo(20, 20);
    EXPECT_TRUE(before == screen());
}

// The picture shows what a dab covers at the present scale, also right after the window was resized.
TEST_F(CursorOutline, ChangesWithTheScaleOfTheCanvas)
{
    ASSERT_TRUE(start(120, 90, {120, 90}));
    brush(20, 10);
    EXPECT_EQ(20, picture().right - picture().left);
    SetWindowPos(session->canvasWindow, nullptr, 0, 0, 240, 270, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(40, picture().right - picture().left);
    EXPECT_EQ(30, picture().bottom - picture().top);
}

// The image covers the canvas: erasing it first would flicker. Without one the default handling erases.
TEST_F(CursorOutline, CanvasWithAnImageIsNotErased)
{
    ASSERT_TRUE(start(60, 60, {60, 60}));
    const Screen before = screen();
    const HDC dc = GetDC(session->canvasWindow);
    EXPECT_EQ(0, SendMessageA(session->canvasWindow, WM_ERASEBKGND, (WPARAM)dc, 0));
    ReleaseDC(session->canvasWindow, dc);
    EXPECT_TRUE(before == screen());
}
