// What undo and redo cost in memory and handles, and what is left of them when memory runs out.
#include "image/bitmap_locks.h"
#include "image/packed_bitmap.h"
#include "tests/session/resources_in_use.h"
#include "tests/session/import_patch.h"
#include "tests/unit/windowed/stroke_model.h"
#include "tools/painting/undo_history.h"

using reference::Picture;

struct UndoMemory : SessionFixture {
    Dice dice = {1};
    Picture first = {};

    bool start(int width, int height)
    {
        first = randomPicture(dice, width, height);
        return open(first);
    }
    void paint(int x, int y)
    {
        sessionBrush({TOOL_BRUSH, 0, false, 9, 9, 100, {dice.upTo(255), dice.upTo(255), dice.upTo(255)}});
        sessionPress(x, y);
        sessionRelease(x, y);
    }
};

static void randomStroke(UndoMemory& test)
{
    const int right = test.first.width, bottom = test.first.height;
    ModelBrush brush = randomBrush(test.dice);
    if (brush.tool == TOOL_STAMP) brush.tool = TOOL_SPOONBILL;  // whose rectangle holds all that it changes
    sessionBrush(brush);
    sessionPress(test.dice.upTo(right), test.dice.upTo(bottom));
    sessionMove(test.dice.upTo(right), test.dice.upTo(bottom));
    sessionRelease(0, 0);
}

static bool sameBytes(HGLOBAL one, HGLOBAL other)
{
    const LockedBitmap a(one), b(other);
    return a && b && a.block.size == b.block.size && memcmp(a.block.header, b.block.header, (size_t)a.block.size) == 0;
}

TEST_F(UndoMemory, ThousandsOfStrokesLeakNoHandles)
{
    ASSERT_TRUE(start(40, 30));
    for (int k = 0; k < 50; ++k)
        randomStroke(*this);
    close();
    const int before = freeMemoryHandles();
    for (int round = 0; round < 4; ++round) {
        ASSERT_TRUE(start(40, 30));
        for (int k = 0; k < 600; ++k) {
            randomStroke(*this);
            if (dice.upTo(2) == 0) applyUndo(UNDO);
            if (dice.upTo(3) == 0) applyUndo(REDO);
        }
        close();
    }
    EXPECT_EQ(before, freeMemoryHandles());
}

// Every step once cost a movable handle, of which a process has 65,536.
TEST_F(UndoMemory, AnyNumberOfStepsTakesOneHandle)
{
    ASSERT_TRUE(start(40, 30));
    paint(10, 10);
    const int before = freeMemoryHandles();
    for (int k = 0; k < 2000; ++k)
        paint(dice.upTo(39), dice.upTo(29));
    ASSERT_EQ(2001, session->undoCount);
    EXPECT_GE(freeMemoryHandles() + 8, before);
    for (int k = 0; k < 2001; ++k)
        applyUndo(UNDO);
    EXPECT_GE(freeMemoryHandles() + 8, before);
}

static HGLOBAL WINAPI noMemory(UINT, SIZE_T)
{
    return nullptr;
}

TEST_F(UndoMemory, UndoAndRedoNeedNoMemory)
{
    ASSERT_TRUE(start(200, 150));
    for (int k = 0; k < 12; ++k)
        randomStroke(*this);
    const HGLOBAL last = duplicateBitmap(image, 1);
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, GetModuleHandleA(nullptr), "GlobalAlloc", (void*)noMemory));
    for (int round = 0; round < 2; ++round) {
        for (int k = 0; k < 20; ++k)
            applyUndo(UNDO);
        EXPECT_TRUE(showsPicture(image, first));
        for (int k = 0; k < 20; ++k)
            applyUndo(REDO);
        EXPECT_TRUE(sameBytes(image, last));
    }
    undoPatch(&patch);
    GlobalFree(last);
}

// The call that counts down to 0 fails.
static int callsToGo;
static void* realCall;

static HGLOBAL WINAPI failingAlloc(UINT flags, SIZE_T size)
{
    return callsToGo-- == 0 ? nullptr : ((decltype(&GlobalAlloc))realCall)(flags, size);
}

static void* WINAPI failingLock(HGLOBAL block)
{
    return callsToGo-- == 0 ? nullptr : ((decltype(&GlobalLock))realCall)(block);
}

static int differentOutside(HGLOBAL image, const Picture& picture, int centreX, int centreY, int reach)
{
    const LockedPixels pixels(image);
    if (!pixels) return -1;
    int different = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (abs(x - centreX) > reach || abs(y - centreY) > reach)
                different += rowOf(pixels.view, y)[x * 3] != picture.at(x, y).blue;
    return different;
}

// Strokes that let the list grow, while one call fails; returns false when no call was left to fail.
static bool strokeWithFailure(const char* function, void* replacement, int call)
{
    ImportPatch patch;
    if (!patchImport(&patch, GetModuleHandleA(nullptr), function, replacement)) return false;
    realCall = patch.before;
    callsToGo = call;
    for (int k = 0; k < 2; ++k) {
        sessionPress(20, 15);
        sessionRelease(20, 15);
    }
    undoPatch(&patch);
    return callsToGo < 0;
}

// A stroke that left no step cannot be undone; every other one can, and in the list nothing is lost.
static void expectStepsWhole(UndoMemory& test, const char* function, void* replacement)
{
    int call = 0;
    for (bool failed = true; failed && call < 500; ++call) {
        ASSERT_TRUE(test.start(40, 30));
        for (int k = 0; k < 255; ++k) {
            sessionBrush({TOOL_BRUSH, 0, k % 2 == 0, 9, 9, 100, {test.dice.upTo(255), 0, 0}});
            sessionPress(test.dice.upTo(39), test.dice.upTo(29));
            sessionRelease(0, 0);
        }
        failed = strokeWithFailure(function, replacement, call);
        ASSERT_GE(session->undoCount, 255) << function << " " << call;
        for (int k = 0; k < 300; ++k)
            applyUndo(UNDO);
        ASSERT_EQ(0, differentOutside(test.image, test.first, 20, 15, 5)) << function << " " << call;
        test.close();
    }
    EXPECT_GT(call, 3) << "nothing failed";
}

TEST_F(UndoMemory, WhateverAllocationFailsTheStepsStay)
{
    expectStepsWhole(*this, "GlobalAlloc", (void*)failingAlloc);
}

TEST_F(UndoMemory, WhateverLockFailsTheStepsStay)
{
    expectStepsWhole(*this, "GlobalLock", (void*)failingLock);
}

// The photo is not copied when the button goes down: only what the dab touches is, and its neighbourhood.
TEST_F(UndoMemory, PressKeepsOnlyWhereItPaints)
{
    ASSERT_TRUE(openOn(bitmapOf(plainPicture(1000, 800, {9, 9, 9})), {100, 80}, false));
    sessionBrush({TOOL_BRUSH, 0, true, 16, 16, 100, {1, 2, 3}});
    sessionPress(500, 400);
    int copied = 0;
    {
        const LockedPixels kept(session->undoSnapshot);
        ASSERT_TRUE(kept);
        for (int y = 0; y < 800; ++y)
            for (int x = 0; x < 1000; ++x)
                copied += rowOf(kept.view, y)[x * 3] == 9;
    }
    EXPECT_GE(copied, 16 * 16);
    EXPECT_LE(copied, 4 * 64 * 64);
    sessionRelease(500, 400);
    applyUndo(UNDO);
    EXPECT_TRUE(showsPicture(image, plainPicture(1000, 800, {9, 9, 9})));
}

// Only the first strokes are whole ones: the steps are what this is about.
TEST_F(UndoMemory, ThousandStrokesOnALargePhotoKeepPatchesOnly)
{
    const HGLOBAL photo = createBitmap(6000, 4000, 24);
    ASSERT_TRUE(openOn(photo, {600, 400}, false));
    sessionBrush({TOOL_BRUSH, 0, false, 16, 16, 100, {1, 2, 3}});
    for (int k = 0; k < 1000; ++k) {
        const int x = dice.between(100, 5800), y = dice.between(100, 3800);
        if (k < 10) {
            sessionPress(x, y);
            sessionMove(x + 50, y + 20);
            sessionRelease(x + 50, y + 20);
        } else {
            session->dirtyBox = {x, x + 50, y, y + 20};
            session->pressActive = 1;
            sessionRelease(x + 50, y + 20);
        }
    }
    ASSERT_EQ(1000, session->undoCount);
    size_t kept = GlobalSize(GlobalHandle(session->undoSteps));
    for (int k = 0; k < 1000; ++k)
        kept += GlobalSize(session->undoSteps[k].patch);
    printf("1000 strokes of 50 x 20 pixels on 6000 x 4000 keep %zu bytes\n", kept);
    // 50 x 20 between the ends, half a brush and a margin of 1 around, one more at the bottom.
    const size_t patch = (size_t)rowStride(50 + 2 * 9, 24) * (20 + 2 * 9 + 1) + 40;
    EXPECT_LE(kept, 1000 * (patch + sizeof(UndoStep) + 16));
}
