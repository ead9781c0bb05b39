// The selection tool at random and in bulk: outlines of every kind against the even-odd rule, and a
// thousand selections without a trace in memory.
#include <gtest/gtest.h>

// After windows.h, which the fixture includes.
#include "tests/unit/windowed/session_fixture.h"

#include <psapi.h>

#include <algorithm>
#include <cmath>

#include "canvas/pointer_input.h"
#include "image/bitmap_locks.h"
#include "selection/geometry/frame_layout.h"
#include "selection/selection_operations.h"
#include "tests/reference/outline_reference.h"
#include "tests/session/resources_in_use.h"

struct SelectionStress : SessionFixture {
    std::mt19937 random = std::mt19937(20);
    reference::Picture photo;

    void openPhoto(int width, int height)
    {
        close();
        photo = randomReference(random, width, height);
        ASSERT_TRUE(open(photo));
        session->currentTool = TOOL_SELECTION;
    }

    void draw(const std::vector<ReferencePoint>& points)
    {
        const HWND canvas = session->canvasWindow;
        pressButton(canvas, {points.front().x, points.front().y});
        for (const ReferencePoint& p : points)
            movePointer(canvas, {p.x, p.y}, true);
        releaseButton(canvas, {points.back().x, points.back().y});
    }
};

static reference::Picture pixelsOf(HGLOBAL bitmap)
{
    const LockedPixels pixels(bitmap);
    if (!pixels) return {};
    const BitsView& view = pixels.view;
    return reference::fromStoredRows(rowOf(view, view.height - 1), view.width, view.height);
}

static void expectSame(const char* what, const reference::Picture& expected, HGLOBAL bitmap)
{
    const reference::Picture actual = pixelsOf(bitmap);
    EXPECT_EQ(expected.width, actual.width) << what;
    EXPECT_EQ(expected.height, actual.height) << what;
    EXPECT_TRUE(expected.pixels == actual.pixels) << what;
}

static void expectFloating(const reference::Picture& photo, const ReferenceOutline& outline)
{
    const ReferenceBounds bounds = outline.crossings.bounds();
    ASSERT_EQ(bounds.empty, session->selectionActive == 0);
    if (bounds.empty) return;
    const RECT rect = {bounds.left, bounds.top, bounds.right, bounds.bottom};
    EXPECT_TRUE(EqualRect(&rect, &session->selectionRect));
    ASSERT_EQ((int)outline.points.size(), session->outlinePointCount);
    for (size_t i = 0; i < outline.points.size(); ++i) {
        const PixelPoint p = session->outlinePoints[i];
        ASSERT_EQ(outline.points[i], (ReferencePoint{p.x, p.y})) << i;
    }
    const reference::Picture image = referenceSelectionImage(photo, outline.crossings, bounds);
    const reference::Picture mask = referenceSelectionMask(outline.crossings, bounds);
    for (HGLOBAL bitmap :
         {session->selectionImage, session->selectionImageSource, session->referenceImageA, session->referenceImageB}) {
        expectSame("image", image, bitmap);
    }
    for (HGLOBAL bitmap :
         {session->selectionMask, session->selectionMaskSource, session->referenceMaskA, session->referenceMaskB}) {
        expectSame("mask", mask, bitmap);
    }
}

TEST_F(SelectionStress, RandomOutlinesAreLiftedAsTheEvenOddRuleSays)
{
    const SIZE sizes[] = {{90, 70}, {64, 200}, {203, 31}, {12, 9}};
    int lifted = 0;
    for (const SIZE& size : sizes) {
        openPhoto((int)size.cx, (int)size.cy);
        for (int round = 0; round < 60; ++round) {
            SCOPED_TRACE(testing::Message() << size.cx << " x " << size.cy << ", outline " << round);
            const std::vector<ReferencePoint> given =
                randomOutline(random, round, photo.width, photo.height, 2 + (int)(random() % 40));
            draw(given);
            expectFloating(photo, referenceOutline(photo.height, photo.width, given, given.back()));
            lifted += session->selectionActive != 0;
            runSelectionOperation(session->canvasWindow, HIT_CLOSE);
            if (HasFatalFailure() || HasNonfatalFailure()) return;
        }
    }
    EXPECT_GT(lifted, 120);
}

TEST_F(SelectionStress, AnOutlineOfAHundredThousandPoints)
{
    openPhoto(1500, 1100);
    const std::vector<ReferencePoint> given = randomOutline(random, 0, photo.width, photo.height, 200);
    draw(given);
    EXPECT_GT(session->outlinePointCount, 100000);
    expectFloating(photo, referenceOutline(photo.height, photo.width, given, given.back()));
}

// Each turn starts from the unturned outline with the whole angle: eleven turns stray no further than one.
TEST_F(SelectionStress, ElevenTurnsOfFifteenDegreesAreOneOf165)
{
    openPhoto(320, 300);
    const std::vector<ReferencePoint> shape = {{120, 100}, {200, 110}, {190, 190}, {150, 150}, {110, 180}};
    draw(shape);
    for (int i = 0; i < 11; ++i)
        rotateSelectionBy(15);
    const std::vector<PixelPoint> eleven(session->outlinePoints, session->outlinePoints + session->outlinePointCount);
    const reference::Picture pixels = pixelsOf(session->selectionImage);
    rotateSelectionBy(-165);
    rotateSelectionBy(165);
    ASSERT_EQ((int)eleven.size(), session->outlinePointCount);
    for (size_t i = 0; i < eleven.size(); ++i) {
        const PixelPoint one = session->outlinePoints[i];
        EXPECT_LE(hypot(one.x - eleven[i].x, one.y - eleven[i].y), 1.5) << i;
    }
    expectSame("turned pixels", pixels, session->selectionImage);
}

// ---- memory

static SIZE_T bytesInUse()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

static void useSelection(int number)
{
    const HWND canvas = session->canvasWindow;
    const int hits[] = {HIT_FLIP_HORIZONTAL, HIT_FLIP_VERTICAL, HIT_HUE_UP, HIT_BRIGHTER, HIT_LIFT_UP, HIT_APPLY};
    moveSelectionBy(number % 30 - 15, number % 20 - 10);
    runSelectionOperation(canvas, hits[number % 6]);
    resizeSelectionTo({20 + number % 9, 20, 120 + number % 13, 100 + number % 17});
    rotateSelectionBy(7 + number % 90);
    runSelectionOperation(canvas, hits[(number + 2) % 6]);
    if (number % 3 == 0) {
        session->currentTool = TOOL_OUTLINE_BRUSH;
        pressButton(canvas, {session->selectionRect.left + 2, session->selectionRect.top + 30});
        releaseButton(canvas, {session->selectionRect.left + 2, session->selectionRect.top + 30});
        session->currentTool = TOOL_SELECTION;
    }
}

TEST_F(SelectionStress, AThousandSelectionsLeaveNothingInMemory)
{
    openPhoto(200, 160);
    // A thousand forgotten arrays of its points would weigh 8 MB, a thousand images 50 MB.
    const std::vector<ReferencePoint> given = randomOutline(random, 0, photo.width, photo.height, 14);
    int memoryBefore = 0, graphicsBefore = 0;
    SIZE_T bytesBefore = 0;
    for (int number = 0; number < 1020; ++number) {
        if (number == 20) {  // the system fills caches of its own at first
            memoryBefore = freeMemoryHandles();
            graphicsBefore = freeGraphicsHandles();
            bytesBefore = bytesInUse();
        }
        draw(given);
        ASSERT_EQ(1u, session->selectionActive);
        useSelection(number);
        runSelectionOperation(session->canvasWindow, HIT_CLOSE);
    }
    const SIZE_T bytesAfter = bytesInUse();
    const long long grown = (long long)bytesAfter - (long long)bytesBefore;
    printf("%zu KB in use before, %lld KB more after a thousand selections\n", (size_t)bytesBefore / 1024,
           grown / 1024);
    ASSERT_GT(bytesBefore, 0u);
    EXPECT_LT(grown, 4 << 20);
    EXPECT_EQ(memoryBefore, freeMemoryHandles());
    EXPECT_EQ(graphicsBefore, freeGraphicsHandles());
}
