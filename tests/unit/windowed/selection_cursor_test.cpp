// Which cursor the canvas chooses over the frame of a floating selection.
#include <gtest/gtest.h>

#include "selection/geometry/frame_layout.h"
#include "selection/selection.h"
#include "selection/selection_frame.h"
#include "tests/session/pointer_guard.h"
#include "tests/unit/windowed/selection_tool_fixture.h"

struct CursorOfHit {
    int hit;
    LPCSTR system;  // or
    int resource;
};

static const CursorOfHit cursorsOfHits[] = {
    {1, nullptr, 15002},
    {3, nullptr, 106},
    {6, nullptr, 118},
    {7, nullptr, 116},
    {8, nullptr, 122},
    {9, nullptr, 120},
    {10, (LPCSTR)IDC_SIZEWE, 0},
    {11, (LPCSTR)IDC_SIZEWE, 0},
    {12, (LPCSTR)IDC_SIZENS, 0},
    {13, (LPCSTR)IDC_SIZENWSE, 0},
    {14, (LPCSTR)IDC_SIZENESW, 0},
    {15, (LPCSTR)IDC_SIZENS, 0},
    {16, (LPCSTR)IDC_SIZENESW, 0},
    {17, (LPCSTR)IDC_SIZENWSE, 0},
    {101, nullptr, 126},
    {102, nullptr, 130},
    {103, nullptr, 132},
    {104, nullptr, 134},
    {105, nullptr, 136},
    {106, nullptr, 140},
    {107, nullptr, 138},
    {108, nullptr, 128},
    {109, nullptr, 144},
    {110, nullptr, 129},
};

// The first pixel of the frame that has the hit code.
static POINT pixelOfHit(int hit)
{
    const PixelRect inner = pixelRectOf(session->frameInnerRect), outer = pixelRectOf(session->frameOuterRect);
    for (int y = outer.top; y < outer.bottom; ++y)
        for (int x = outer.left; x < outer.right; ++x)
            if (hitTestFrame(inner, outer, frameButtons(), frameBand(), {x, y}) == hit) return {x, y};
    ADD_FAILURE() << "no pixel has hit code " << hit;
    return {0, 0};
}

// What the canvas chooses with the pointer there; 0 when it leaves the choice to the window class.
static HCURSOR cursorAt(POINT pixel)
{
    ClientToScreen(session->canvasWindow, &pixel);
    SetCursorPos(pixel.x, pixel.y);
    SetCursor(nullptr);
    return setSelectionCursor(session->canvasWindow) ? GetCursor() : nullptr;
}

struct SelectionCursor : SelectionTool {
    PointerOfTest pointer;
};

TEST_F(SelectionCursor, EveryPartOfTheFrameHasItsCursor)
{
    ModuleHome home;
    ASSERT_TRUE(moveModuleHome(&home));
    picture = randomPicture(dice, 300, 250);
    ASSERT_TRUE(open(picture, {0, 0}, true));
    session->currentTool = TOOL_SELECTION;
    draw({{60, 50}, {240, 50}, {240, 200}, {60, 200}});
    for (const CursorOfHit& row : cursorsOfHits) {
        SCOPED_TRACE(row.hit);
        const HCURSOR expected =
            row.system ? LoadCursorA(nullptr, row.system) : LoadCursorA(home.module, MAKEINTRESOURCEA(row.resource));
        ASSERT_NE(nullptr, expected);
        EXPECT_EQ(expected, cursorAt(pixelOfHit(row.hit)));
    }
    EXPECT_EQ(nullptr, cursorAt({5, 5})) << "outside the frame the tool's own cursor shows";
    session->currentTool = TOOL_OUTLINE_BRUSH;
    EXPECT_EQ(nullptr, cursorAt({150, 120}));
    close();
    leaveModuleHome(&home);
}
