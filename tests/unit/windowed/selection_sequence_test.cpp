// The selection's operations in random order, and with memory running out at every place in turn: whatever
// happens, its parts fit together, and the photo changes by applying only.
#include <gtest/gtest.h>

#include <functional>

#include "canvas/pointer_input.h"
#include "image/bitmap_block.h"
#include "image/packed_bitmap.h"
#include "selection/geometry/frame_layout.h"
#include "selection/clear_selection.h"
#include "selection/outline_brush_tool.h"
#include "selection/selection.h"
#include "selection/selection_operations.h"
#include "selection/selection_frame.h"
#include "selection/selection_state.h"
#include "selection/stored_selection.h"
#include "tests/unit/windowed/memory_shortage.h"
#include "tests/unit/windowed/session_fixture.h"

struct SelectionSequence : SessionFixture {
    Dice dice = {31};
    reference::Picture picture;

    void openPhoto(int width, int height)
    {
        close();
        picture = randomPicture(dice, width, height);
        ASSERT_TRUE(open(picture));
        session->currentTool = TOOL_SELECTION;
    }

    POINT anyPoint() { return {dice.between(0, picture.width - 1), dice.between(0, picture.height - 1)}; }

    void draw(const std::vector<POINT>& points)
    {
        const HWND canvas = session->canvasWindow;
        pressButton(canvas, points.front());
        for (const POINT& point : points)
            movePointer(canvas, point, true);
        releaseButton(canvas, points.back());
    }

    void drawAnything()
    {
        std::vector<POINT> points;
        for (int n = dice.between(1, 12); n > 0; --n)
            points.push_back(anyPoint());
        draw(points);
    }

    void dabOutline(POINT at)
    {
        session->currentTool = TOOL_OUTLINE_BRUSH;
        session->brushWidth = session->brushHeight = (uint32_t)dice.between(1, 48);
        pressButton(session->canvasWindow, at);
        releaseButton(session->canvasWindow, at);
        session->currentTool = TOOL_SELECTION;
    }

    void placeStored()
    {
        const HGLOBAL image = duplicateBitmap(session->selectionImage, 1);
        const HGLOBAL mask = duplicateBitmap(session->selectionMask, 1);
        placeStoredSelection(anyPoint(), image, mask);
    }
};

static SIZE sizeOf(HGLOBAL bitmap)
{
    return {bitmapWidth(bitmap), bitmapHeight(bitmap)};
}

static void expectSize(const char* what, const RECT& rect, HGLOBAL bitmap)
{
    ASSERT_NE(nullptr, bitmap) << what;
    EXPECT_EQ(rect.right - rect.left, sizeOf(bitmap).cx) << what;
    EXPECT_EQ(rect.bottom - rect.top, sizeOf(bitmap).cy) << what;
}

static void expectNothingLeft()
{
    const SessionRecord& s = *session;
    for (const void* part :
         {(const void*)s.outlinePoints, (const void*)s.outlineSnapshot, (const void*)s.rowCrossings,
          (const void*)s.homeCrossings, (const void*)s.referenceCrossingsA, (const void*)s.referenceCrossingsB,
          (const void*)s.referencePointsA, (const void*)s.referencePointsB, (const void*)s.selectionImage,
          (const void*)s.selectionMask, (const void*)s.selectionImageSource, (const void*)s.selectionMaskSource,
          (const void*)s.referenceImageA, (const void*)s.referenceMaskA, (const void*)s.referenceImageB,
          (const void*)s.referenceMaskB}) {
        EXPECT_EQ(nullptr, part);
    }
    EXPECT_EQ(0, s.outlinePointCount);
    for (const RECT* rect : {&s.selectionRect, &s.selectionOuterRect, &s.frameInnerRect, &s.frameOuterRect}) {
        EXPECT_TRUE(IsRectEmpty(rect));
    }
}

// What must hold between any two operations.
static void expectWhole()
{
    const SessionRecord& s = *session;
    if (!s.selectionActive) return expectNothingLeft();
    EXPECT_GT(s.outlinePointCount, 0);
    for (const void* part :
         {(const void*)s.outlinePoints, (const void*)s.homeCrossings, (const void*)s.referencePointsA,
          (const void*)s.referencePointsB, (const void*)s.referenceCrossingsA, (const void*)s.referenceCrossingsB}) {
        EXPECT_NE(nullptr, part);
    }
    EXPECT_EQ(nullptr, s.rowCrossings) << "the working table belongs to an operation";
    expectSize("image", s.selectionRect, s.selectionImage);
    expectSize("mask", s.selectionRect, s.selectionMask);
    expectSize("source", s.selectionRect, s.selectionImageSource);
    expectSize("mask's source", s.selectionRect, s.selectionMaskSource);
    expectSize("image A", s.referenceRectA, s.referenceImageA);
    expectSize("mask A", s.referenceRectA, s.referenceMaskA);
    expectSize("image B", s.referenceRectB, s.referenceImageB);
    expectSize("mask B", s.referenceRectB, s.referenceMaskB);
    EXPECT_TRUE(EqualRect(&s.selectionRect, &s.frameInnerRect));
    EXPECT_TRUE(EqualRect(&s.selectionRect, &s.selectionHomeRect));
    EXPECT_TRUE(EqualRect(&s.selectionOuterRect, &s.frameOuterRect));
}

// The floating pixels laid into the picture, cut off at its borders.
static reference::Picture withSelection(reference::Picture picture)
{
    const RECT& r = session->selectionRect;
    for (int y = r.top; y < r.bottom; ++y) {
        for (int x = r.left; x < r.right; ++x) {
            if (x < 0 || y < 0 || x >= picture.width || y >= picture.height) continue;
            COLORREF mask = 0, colour = 0;
            getPixelColour(session->selectionMask, x - r.left, y - r.top, &mask);
            getPixelColour(session->selectionImage, x - r.left, y - r.top, &colour);
            if (GetRValue(mask) == 0) picture.at(x, y) = {GetBValue(colour), GetGValue(colour), GetRValue(colour)};
        }
    }
    return picture;
}

static const int oneClickHits[] = {HIT_FLIP_HORIZONTAL, HIT_FLIP_VERTICAL, HIT_DARKER,          HIT_BRIGHTER,
                                   HIT_HUE_DOWN,        HIT_HUE_UP,        HIT_SATURATION_MORE, HIT_SATURATION_LESS,
                                   HIT_CONTRAST_MORE,   HIT_CONTRAST_LESS, HIT_LIFT_UP,         HIT_LIFT_DOWN};

TEST_F(SelectionSequence, RandomOperationsKeepEverythingWhole)
{
    const SIZE sizes[] = {{120, 90}, {61, 200}, {9, 7}, {1, 1}, {300, 1}, {1, 50}};
    int floating = 0, applied = 0;
    for (const SIZE& size : sizes) {
        openPhoto((int)size.cx, (int)size.cy);
        const HWND canvas = session->canvasWindow;
        for (int step = 0; step < 700; ++step) {
            SCOPED_TRACE(testing::Message() << size.cx << " x " << size.cy << ", step " << step);
            if (!session->selectionActive) drawAnything();
            expectWhole();
            if (!session->selectionActive) continue;  // there is no frame that could be pressed
            const RECT rect = session->selectionRect;
            switch (dice.between(0, 9)) {
            case 0: moveSelectionBy(dice.between(-60, 60), dice.between(-60, 60)); break;
            case 1: moveSelectionBy(dice.between(-3000, 3000), dice.between(-3000, 3000)); break;
            case 2:
                resizeSelectionTo({rect.left + dice.between(-20, 20), rect.top + dice.between(-20, 20),
                                   rect.left + dice.between(1, 150), rect.top + dice.between(1, 150)});
                break;
            case 3:
            case 4: rotateSelectionBy(dice.between(-360, 360)); break;
            case 5:
                picture = withSelection(picture);
                ++applied;
                runSelectionOperation(canvas, HIT_APPLY);
                break;
            case 6: dabOutline(dice.between(0, 1) ? anyPoint() : POINT{rect.left, rect.top}); break;
            case 7:
                if (dice.between(0, 3) == 0) runSelectionOperation(canvas, HIT_CLOSE);
                break;
            case 8:
                if (dice.between(0, 2) == 0) placeStored();
                break;
            default: runSelectionOperation(canvas, oneClickHits[dice.between(0, 11)]); break;
            }
            expectWhole();
            floating += session->selectionActive != 0;
            ASSERT_TRUE(showsPicture(image, picture));
            ASSERT_FALSE(HasFailure());
        }
    }
    EXPECT_GT(floating, 1000);
    EXPECT_GT(applied, 100);
}

// ---- memory running out

TEST_F(SelectionSequence, MemoryRunningOutAnywhereLeavesEverythingWhole)
{
    struct Step {
        const char* name;
        std::function<void()> run;
        bool needsNoMemory = false;
    };
    const std::vector<POINT> shape = {{30, 20}, {80, 25}, {95, 60}, {60, 70}, {50, 45}, {25, 60}};
    const Step steps[] = {
        {"draw",
         [&] {
             clearSelection();
             draw(shape);
         }},
        {"move", [&] { moveSelectionBy(3, 4); }, true},
        {"resize",
         [&] {
             resizeSelectionTo({10, 12, 100, 70});
         }},
        {"turn", [&] { rotateSelectionBy(33); }},
        {"turn back", [&] { rotateSelectionBy(-session->selectionRotation); }},
        {"flip", [&] { runSelectionOperation(session->canvasWindow, HIT_FLIP_HORIZONTAL); }},
        {"colour", [&] { runSelectionOperation(session->canvasWindow, HIT_HUE_UP); }},
        {"brush",
         [&] {
             session->brushWidth = session->brushHeight = 20;
             session->currentTool = TOOL_OUTLINE_BRUSH;
             const POINT at = {session->selectionRect.left + 6, session->selectionRect.top + 20};
             pressButton(session->canvasWindow, at);
             releaseButton(session->canvasWindow, at);
             session->currentTool = TOOL_SELECTION;
         }},
        {"place",
         [&] {
             const HGLOBAL pixels = duplicateBitmap(session->selectionImage, 1);
             const HGLOBAL mask = duplicateBitmap(session->selectionMask, 1);
             placeStoredSelection({60, 40}, pixels, mask);
         }},
    };
    openPhoto(120, 90);
    for (const Step& step : steps) {
        int failures = 0;
        for (bool wantedMore = true; wantedMore && failures < 300; ++failures) {
            SCOPED_TRACE(testing::Message() << step.name << " with memory for " << failures << " allocations");
            if (!session->selectionActive) draw(shape);
            ASSERT_EQ(1u, session->selectionActive);
            wantedMore = runShortOfMemory(failures, step.run);
            expectWhole();
            ASSERT_TRUE(showsPicture(image, picture));
            ASSERT_FALSE(HasFailure());
        }
        if (!step.needsNoMemory) {
            EXPECT_GT(failures, 1) << step.name;
        }
        EXPECT_LT(failures, 300) << step.name;
        EXPECT_EQ(1u, session->selectionActive) << step.name << " with enough memory";
    }
}
