// What the freehand selection shows: outline, frame and buttons, what follows the pointer, and nothing once
// it is gone.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <random>

#include "tests/session/selection_fixture.h"

typedef SelectionSession SelectionFrames;

TEST_F(SelectionFrames, TheFrameLeavesNoPixelWhenItIsClosed)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        ASSERT_TRUE(movePointerOnCanvas(&host, 5, 5));
        const std::vector<uint8_t> before = shownBy(host.canvas).bytes;
        draw(star);
        EXPECT_FALSE(before == shownBy(host.canvas).bytes);
        dragInside(37, 21);
        dragSide(BOTTOM_RIGHT, 30, 20);
        press(FLIP_HORIZONTAL);
        press(HUE_UP);
        press(CLOSE);
        EXPECT_TRUE(before == shownBy(host.canvas).bytes) << "after the close button";
        draw(star);
        ASSERT_TRUE(clickControl(&host, ID_BRUSH));  // a painting tool drops the selection
        EXPECT_TRUE(before == shownBy(host.canvas).bytes) << "after another tool";
        closeSession();
    }
}

static BOOL CALLBACK takeTip(HWND window, LPARAM found)
{
    if (classOf(window) == TOOLTIPS_CLASSA && GetWindow(window, GW_OWNER) == ((Host*)found)->dialog)
        ((Host*)found)->control = window;
    return TRUE;
}

// The tip that belongs to the editing window; null before there was one.
static HWND frameTip(const Host& host)
{
    Host search = {};
    search.dialog = host.dialog;
    EnumThreadWindows(host.threadId, takeTip, (LPARAM)&search);
    return search.control;
}

static std::string tipText(Host* host)
{
    char text[128] = "";
    runOnHost(host, [&] {
        TOOLINFOA entry = {};
        entry.cbSize = TTTOOLINFOA_V2_SIZE;
        entry.hwnd = host->canvas;
        entry.uId = (UINT_PTR)host->canvas;
        entry.lpszText = text;
        SendMessageA(frameTip(*host), TTM_GETTEXTA, sizeof text, (LPARAM)&entry);
    });
    return text;
}

TEST_F(SelectionFrames, TipsNameEveryButton)
{
    const struct {
        int hit;
        const char* name;
    } buttons[] = {
        {CLOSE, "Drop the selection"},
        {APPLY, "Stamp onto the photo"},
        {FLIP_VERTICAL, "Flip vertically"},
        {FLIP_HORIZONTAL, "Flip horizontally"},
        {BRIGHTER, "Brighter"},
        {DARKER, "Darker"},
        {ROTATE, "Rotate"},
        {HUE_DOWN, "Hue back"},
        {HUE_UP, "Hue onward"},
        {SATURATION_MORE, "More saturation"},
        {SATURATION_LESS, "Less saturation"},
        {CONTRAST_MORE, "More contrast"},
        {CONTRAST_LESS, "Less contrast"},
        {LIFT_UP, "Lift toward white"},
        {LIFT_DOWN, "Lift less"},
        {TOP_LEFT, "Resize"},
        {TOP_RIGHT, "Resize"},
        {BOTTOM_LEFT, "Resize"},
        {BOTTOM_RIGHT, "Resize"},
        {INSIDE, ""},
        {LEFT_EDGE, ""},
    };
    openAt(sizes[0]);
    draw(star);
    for (const auto& button : buttons) {
        const POINT at = clientOfHit(button.hit);
        ASSERT_TRUE(placePointer(&host, onCanvas(host, at.x, at.y)));  // the tip asks where the pointer is
        EXPECT_EQ(button.name, tipText(&host)) << button.hit;
        const bool named = *button.name != 0;
        if (button.hit != CLOSE && named) continue;
        ASSERT_TRUE(waitUntil("the tip", [&] { return (IsWindowVisible(frameTip(host)) != 0) == named; }));
    }
    const POINT at = clientOfHit(HUE_UP);
    ASSERT_TRUE(placePointer(&host, onCanvas(host, at.x, at.y)));
    ASSERT_TRUE(waitUntil("the tip", [&] { return IsWindowVisible(frameTip(host)) != 0; }));
    ASSERT_TRUE(pressButton(&host));
    EXPECT_FALSE(IsWindowVisible(frameTip(host))) << "a press takes it away";
    ASSERT_TRUE(releaseButton(&host));
    restPointer();
    closeSession();
}

TEST_F(SelectionFrames, AnOutlineThatEnclosesNothingLeavesNoPixel)
{
    openAt(sizes[0]);
    const std::vector<uint8_t> before = shownBy(host.canvas).bytes;
    ASSERT_TRUE(drawStroke(&host, {{100, 100}, {300, 100}}));
    ASSERT_TRUE(drawStroke(&host, {{120, 200}}));
    EXPECT_TRUE(before == shownBy(host.canvas).bytes);
    draw(star);  // the tool is ready again
    apply();
    expectPhoto("after an outline that enclosed nothing");
    closeSession();
}

TEST_F(SelectionFrames, WhatFollowsThePointerLeavesNoTrace)
{
    openAt(sizes[0]);
    draw(star);
    const std::vector<uint8_t> before = shownBy(host.dialog).bytes;
    for (const int hit : {INSIDE, LEFT_EDGE, BOTTOM_RIGHT, ROTATE}) {
        SCOPED_TRACE(hit);
        const POINT at = clientOfHit(hit);
        ASSERT_TRUE(movePointerOnCanvas(&host, at.x, at.y));
        ASSERT_TRUE(pressButton(&host));
        ASSERT_TRUE(movePointerOnCanvas(&host, at.x - 50, at.y + 30));
        EXPECT_FALSE(before == shownBy(host.dialog).bytes) << "something follows";
        ASSERT_TRUE(movePointerOnCanvas(&host, at.x, at.y));
        ASSERT_TRUE(releaseButton(&host));
        EXPECT_TRUE(before == shownBy(host.dialog).bytes);
    }
    closeSession();
}

static reference::Pixel inverse(reference::Pixel p)
{
    return {(uint8_t)~p.blue, (uint8_t)~p.green, (uint8_t)~p.red};
}

// What the canvas should show of a floating selection at the photo's own size, told pixel by pixel.
struct FramePicture {
    reference::Picture shown;

    reference::Pixel colour(COLORREF c) { return {GetBValue(c), GetGValue(c), GetRValue(c)}; }

    void fill(const RECT& r, COLORREF c)
    {
        for (LONG y = r.top; y < r.bottom; ++y)
            for (LONG x = r.left; x < r.right; ++x)
                shown.at((int)x, (int)y) = colour(c);
    }

    // Raised: the light on the left and upper line, the shadow one pixel beyond the face on the others.
    void face(const RECT& r)
    {
        fill(r, GetSysColor(COLOR_BTNFACE));
        const COLORREF light = GetSysColor(COLOR_BTNHIGHLIGHT), shadow = GetSysColor(COLOR_BTNSHADOW);
        fill({r.left, r.top, r.left + 1, r.bottom + 1}, light);
        fill({r.left, r.top, r.right, r.top + 1}, light);
        fill({r.right, r.top, r.right + 1, r.bottom + 1}, shadow);
        fill({r.left + 1, r.bottom, r.right + 1, r.bottom + 1}, shadow);
    }

    void cross(RECT r)
    {
        InflateRect(&r, -5, -1);
        const LONG w = (r.right - r.left) / 3, h = (r.bottom - r.top) / 3;
        fill({r.left, r.top, r.left + w, r.top + h}, 0);
        fill({r.right - w, r.top, r.right, r.top + h}, 0);
        fill({r.left + w, r.top + h, r.right - w, r.bottom - h}, 0);
        fill({r.left, r.bottom - h, r.left + w, r.bottom}, 0);
        fill({r.right - w, r.bottom - h, r.right, r.bottom}, 0);
    }

    // Two pixels wide, inside the rectangle.
    void invertFrame(const RECT& r)
    {
        const RECT hole = {r.left + 2, r.top + 2, r.right - 2, r.bottom - 2};
        for (LONG y = r.top; y < r.bottom; ++y)
            for (LONG x = r.left; x < r.right; ++x) {
                if (PtInRect(&hole, {x, y})) continue;
                shown.at((int)x, (int)y) = inverse(shown.at((int)x, (int)y));
            }
    }
};

static bool isBlack(reference::Pixel p)
{
    return p == reference::Pixel{0, 0, 0};
}

static bool isWhite(reference::Pixel p)
{
    return p == reference::Pixel{255, 255, 255};
}

// The dots are taken from the screen: which of them are white is the system's choice. The frame inverts
// those under it.
static void takeDots(const reference::Picture& screen, const std::vector<ReferencePoint>& outline, const RECT& frame,
                     reference::Picture* picture)
{
    const RECT hole = {frame.left + 2, frame.top + 2, frame.right - 2, frame.bottom - 2};
    int black = 0, white = 0, run = 1, longest = 1;
    reference::Pixel last = {1, 2, 3};
    for (const ReferencePoint& p : outline) {
        reference::Pixel dot = screen.at(p.x, p.y);
        if (!PtInRect(&hole, {p.x, p.y})) dot = inverse(dot);
        ASSERT_TRUE(isBlack(dot) || isWhite(dot)) << p.x << "," << p.y;
        (isBlack(dot) ? black : white)++;
        run = dot == last ? run + 1 : 1;
        longest = std::max(longest, run);
        last = dot;
        picture->at(p.x, p.y) = dot;
    }
    EXPECT_GT(black, (int)outline.size() / 4);
    EXPECT_GT(white, (int)outline.size() / 4);
    EXPECT_LT(longest, 12) << "dots, not dashes";
}

TEST_F(SelectionFrames, TheFrameIsDrawnPixelByPixel)
{
    openAt(sizes[0]);
    draw(star);
    dragInside(41, -23);
    press(HUE_UP);
    model.values.hue = 3;
    ASSERT_TRUE(movePointerOnCanvas(&host, 5, 5));
    const reference::StoredPicture canvas = shownBy(host.canvas);
    const reference::Picture screen = reference::fromStoredRows(canvas.bytes.data(), canvas.width, canvas.height);

    FramePicture picture = {model.photo};
    const std::vector<uint8_t> unmoved = expectedBlock(model);
    applyModel(&model);  // only to see it lie there
    picture.shown = model.photo;
    const FrameMeasures frame = frameOf(model);
    takeDots(screen, model.shown.points, frame.inner, &picture.shown);
    picture.invertFrame(frame.inner);
    picture.face(buttonRect(frame, CLOSE));
    picture.cross(buttonRect(frame, CLOSE));
    for (const int hit : {TOP_LEFT, TOP_RIGHT, BOTTOM_RIGHT, BOTTOM_LEFT}) {
        picture.fill(buttonRect(frame, hit), RGB(255, 255, 255));
    }
    for (const int hit : {APPLY, FLIP_VERTICAL, FLIP_HORIZONTAL, BRIGHTER, DARKER, ROTATE, HUE_DOWN, HUE_UP,
                          SATURATION_MORE, SATURATION_LESS, CONTRAST_MORE, CONTRAST_LESS, LIFT_UP, LIFT_DOWN}) {
        picture.face(buttonRect(frame, hit));
    }
    int wrong = 0;
    for (int y = 0; y < screen.height; ++y)
        for (int x = 0; x < screen.width; ++x) {
            const reference::Pixel is = screen.at(x, y), wanted = picture.shown.at(x, y);
            if (is == wanted) continue;
            if (++wrong <= 8)
                ADD_FAILURE() << "(" << x << ", " << y << ") is " << (int)is.red << ' ' << (int)is.green << ' '
                              << (int)is.blue << ", should be " << (int)wanted.red << ' ' << (int)wanted.green << ' '
                              << (int)wanted.blue;
        }
    EXPECT_EQ(0, wrong);
    EXPECT_TRUE(unmoved == snapshot(photo));
    closeSession();
}

// ---- nothing is left on the screen

TEST_F(SelectionFrames, NoOperationLeavesAnythingOnTheScreen)
{
    const int pressed[] = {APPLY, FLIP_VERTICAL, FLIP_HORIZONTAL, HUE_UP, BRIGHTER, LIFT_UP};
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        std::mt19937 random(41);
        const auto between = [&](int least, int most) {
            return least + (int)(random() % (unsigned)(most - least + 1));
        };
        openAt(size);
        for (int round = 0; round < 3; ++round) {
            draw(star);
            EXPECT_TRUE(showsWhatAFullRepaintShows(&host)) << "drawing";
            for (int i = 0; i < 4; ++i) {
                press(pressed[between(0, 5)]);
                EXPECT_TRUE(showsWhatAFullRepaintShows(&host)) << "a button";
                dragInside(between(-40, 40), between(-40, 40));
                EXPECT_TRUE(showsWhatAFullRepaintShows(&host)) << "moving";
                dragSide(between(LEFT_EDGE, BOTTOM_RIGHT), between(-25, 25), between(-25, 25));
                EXPECT_TRUE(showsWhatAFullRepaintShows(&host)) << "resizing";
            }
            press(CLOSE);
            EXPECT_TRUE(showsWhatAFullRepaintShows(&host)) << "closing";
            draw(star);
            dragTurn(between(20, 160));
            EXPECT_TRUE(showsWhatAFullRepaintShows(&host)) << "turning";
            ASSERT_TRUE(clickControl(&host, ID_BRUSH));  // a painting tool drops the selection
            EXPECT_TRUE(showsWhatAFullRepaintShows(&host)) << "another tool";
            ASSERT_TRUE(clickControl(&host, ID_SELECTION));
        }
        closeSession();
    }
}
