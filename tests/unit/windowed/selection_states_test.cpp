// The states that a floating selection is made again from: whole wherever it lies, and changed together or
// not at all.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "canvas/pointer_input.h"
#include "color/colour_adjustment.h"
#include "image/bitmap_block.h"
#include "image/kept_blocks.h"
#include "image/packed_bitmap.h"
#include "image/pixels/scarce_memory.h"
#include "selection/geometry/frame_layout.h"
#include "selection/clear_selection.h"
#include "selection/outline_brush_tool.h"
#include "selection/selection.h"
#include "selection/selection_frame.h"
#include "selection/selection_operations.h"
#include "selection/stored_selection.h"
#include "tests/unit/windowed/block_bytes.h"
#include "tests/unit/windowed/memory_shortage.h"
#include "tests/unit/windowed/session_fixture.h"

static const std::vector<POINT> shape = {{60, 50}, {110, 55}, {125, 90}, {90, 100}, {80, 75}, {55, 90}};

struct SelectionStates : SessionFixture {
    reference::Picture picture;

    void openPhoto(int width, int height)
    {
        close();
        picture = plainPicture(width, height, {0, 0, 0});
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                picture.at(x, y) = {(uint8_t)x, (uint8_t)y, (uint8_t)(x / 256 + 16 * (y / 256))};  // its place
        ASSERT_TRUE(open(picture));
        session->currentTool = TOOL_SELECTION;
    }

    void draw(const std::vector<POINT>& points)
    {
        const HWND canvas = session->canvasWindow;
        clearSelection();
        pressButton(canvas, points.front());
        for (const POINT& point : points)
            movePointer(canvas, point, true);
        releaseButton(canvas, points.back());
        ASSERT_EQ(1u, session->selectionActive);
    }

    void click(int hit) { runSelectionOperation(session->canvasWindow, hit); }

    void dab(POINT at, int size)
    {
        session->currentTool = TOOL_OUTLINE_BRUSH;
        session->brushWidth = session->brushHeight = (uint32_t)size;
        pressButton(session->canvasWindow, at);
        releaseButton(session->canvasWindow, at);
        session->currentTool = TOOL_SELECTION;
    }

    void resizeBy(int dx, int dy)
    {
        const RECT& r = session->selectionRect;
        resizeSelectionTo({r.left, r.top, r.right + dx, r.bottom + dy});
    }
};

typedef std::vector<uint8_t> Bytes;

static void append(Bytes* all, const void* bytes, size_t size)
{
    all->insert(all->end(), (const uint8_t*)bytes, (const uint8_t*)bytes + size);
}

static void appendTable(Bytes* all, const RowHead* table)
{
    for (int row = 0; table && row <= crossingRowCount(table); ++row) {
        for (const RowHead* node = table[row].next; node != table + row; node = node->next)
            append(all, &node->x, sizeof node->x);
        append(all, &row, sizeof row);
    }
}

static void appendPoints(Bytes* all, const PixelPoint* points, int count)
{
    append(all, points, (size_t)count * sizeof *points);
}

// Everything that belongs to the selection, apart from where it lies in memory.
static Bytes wholeSelection()
{
    Bytes all;
    const SessionRecord& s = *session;
    for (const HGLOBAL image : {s.selectionImage, s.selectionMask, s.selectionImageSource, s.selectionMaskSource,
                                s.referenceImageA, s.referenceMaskA, s.referenceImageB, s.referenceMaskB}) {
        const Bytes bytes = bytesOf(image);
        append(&all, bytes.data(), bytes.size());
    }
    for (const RowHead* table : {s.homeCrossings, s.referenceCrossingsA, s.referenceCrossingsB})
        appendTable(&all, table);
    appendPoints(&all, s.outlinePoints, s.outlinePointCount);
    appendPoints(&all, s.outlineSnapshot, s.outlinePointCount);
    appendPoints(&all, s.referencePointsA, s.referencePointCountA);
    appendPoints(&all, s.referencePointsB, s.referencePointCountB);
    for (const RECT& rect : {s.selectionRect, s.selectionOuterRect, s.frameInnerRect, s.frameOuterRect, s.applyButton,
                             s.selectionHomeRect, s.referenceRectA, s.referenceRectB}) {
        append(&all, &rect, sizeof rect);
    }
    for (const int32_t value : {s.selectionRotation, s.selectionBrightness, s.selectionContrast, s.selectionSaturation,
                                s.selectionHue, s.selectionLift, (int32_t)s.selectionActive}) {
        append(&all, &value, sizeof value);
    }
    return all;
}

struct Pixels {
    Bytes image, mask;
    bool operator==(const Pixels& other) const { return image == other.image && mask == other.mask; }
};

static Pixels pixelsNow()
{
    return {bytesOf(session->selectionImageSource), bytesOf(session->selectionMaskSource)};
}

// The same stretched pixels at another place. A column is a product of the stretch, a fraction, cut to a whole
// number: where it should be just whole, its last bit may make it the one before, depending on the place.
// A pixel tells its place: its column may be one off here and there, its row never.
static void expectStretchedAlike(const Pixels& wanted, const Pixels& seen)
{
    ASSERT_EQ(wanted.image.size(), seen.image.size());
    EXPECT_TRUE(wanted.mask == seen.mask);
    size_t different = 0;
    for (size_t i = sizeof(BITMAPINFOHEADER); i < seen.image.size(); ++i) {
        if (wanted.image[i] == seen.image[i]) continue;
        ++different;
        ASSERT_EQ(1, abs(wanted.image[i] - seen.image[i])) << i;
    }
    EXPECT_LT(different, seen.image.size() / 100);
}

static const POINT overTheBorders[] = {{-100, 0}, {0, -90},   {130, 0},     {0, 110},
                                       {-95, 85}, {117, -83}, {-200, -160}, {-61, -51}};

TEST_F(SelectionStates, TurnedMovedOverTheBorderAndTurnedBackNothingIsGone)
{
    openPhoto(200, 150);
    draw(shape);
    resizeBy(17, 11);
    const Pixels resized = pixelsNow();
    for (const POINT& by : overTheBorders) {
        SCOPED_TRACE(testing::Message() << by.x << ", " << by.y);
        draw(shape);
        rotateSelectionBy(40);
        moveSelectionBy(by.x, by.y);
        rotateSelectionBy(-session->selectionRotation);
        resizeBy(17, 11);
        expectStretchedAlike(resized, pixelsNow());
    }
}

TEST_F(SelectionStates, FlippedOverTheBorderNothingIsGone)
{
    openPhoto(200, 150);
    for (const int hit : {HIT_FLIP_HORIZONTAL, HIT_FLIP_VERTICAL}) {
        draw(shape);
        click(hit);
        const Pixels flipped = pixelsNow();
        resizeBy(9, 23);
        const Pixels resized = pixelsNow();
        for (const POINT& by : overTheBorders) {
            SCOPED_TRACE(testing::Message() << by.x << ", " << by.y);
            draw(shape);
            moveSelectionBy(by.x, by.y);
            click(hit);
            EXPECT_TRUE(flipped == pixelsNow());
            resizeBy(9, 23);
            expectStretchedAlike(resized, pixelsNow());
        }
    }
}

// What is shown is raised to the image's first row and column; what it is made from is not.
TEST_F(SelectionStates, MovesOverTheBorderAndBackCompoundNothing)
{
    openPhoto(200, 150);
    draw(shape);
    const Bytes before = wholeSelection();
    for (const POINT& by : overTheBorders) {
        const int steps = 10;
        for (int n = 0; n < steps; ++n)
            moveSelectionBy(by.x / steps, by.y / steps);
        const PointBox shown = boxOfPoints(session->outlinePoints, session->outlinePointCount);
        EXPECT_GE(shown.minX, 1);
        EXPECT_GE(shown.minY, 1);
        for (int n = 0; n < steps; ++n)
            moveSelectionBy(-(by.x / steps), -(by.y / steps));
        EXPECT_TRUE(before == wholeSelection()) << by.x << ", " << by.y;
    }
}

TEST_F(SelectionStates, AStoredSelectionLargerThanTheImageStaysWhole)
{
    openPhoto(250, 250);
    draw({{60, 50}, {160, 55}, {175, 180}, {120, 187}, {80, 125}, {55, 160}});
    const Bytes image = bytesOf(session->selectionImageSource), mask = bytesOf(session->selectionMaskSource);
    const auto blockOf = [](const Bytes& bytes) {
        const HGLOBAL block = GlobalAlloc(GHND, bytes.size());
        memcpy(GlobalLock(block), bytes.data(), bytes.size());
        GlobalUnlock(block);
        return block;
    };
    std::vector<Pixels> wanted;
    for (const SIZE photo : {SIZE{250, 250}, SIZE{90, 96}, SIZE{20, 300}, SIZE{300, 9}}) {
        SCOPED_TRACE(testing::Message() << "in a photo of " << photo.cx << " x " << photo.cy);
        openPhoto((int)photo.cx, (int)photo.cy);
        std::vector<Pixels> seen;
        const auto place = [&] {
            ASSERT_TRUE(placeStoredSelection({photo.cx / 2, photo.cy / 2}, blockOf(image), blockOf(mask)));
        };
        place();
        seen.push_back(pixelsNow());
        resizeBy(13, 21);
        seen.push_back(pixelsNow());
        place();
        click(HIT_FLIP_HORIZONTAL);
        seen.push_back(pixelsNow());
        resizeBy(40, 2);
        seen.push_back(pixelsNow());
        place();
        rotateSelectionBy(70);
        rotateSelectionBy(-70);
        resizeBy(31, 0);
        seen.push_back(pixelsNow());
        if (wanted.empty()) wanted = seen;
        for (size_t n = 0; n < seen.size(); ++n)
            expectStretchedAlike(wanted[n], seen[n]);
    }
}

TEST_F(SelectionStates, TheOutlineBrushKeepsWhatLiesOutside)
{
    openPhoto(200, 150);
    const std::vector<POINT> block = {{60, 50}, {140, 50}, {140, 110}, {60, 110}};
    for (const bool whole : {true, false}) {
        draw(block);
        const auto columnsInside = [] {
            int count = 0;
            const RECT& r = session->selectionRect;
            for (int x = 0; x < r.right - r.left; ++x) {
                COLORREF mask = 1;
                getPixelColour(session->selectionMaskSource, x, 32, &mask);
                count += GetRValue(mask) == 0;
            }
            return count;
        };
        static int wanted;
        if (whole) {
            dab({132, 81}, 30);
            wanted = columnsInside();
        } else {
            moveSelectionBy(-90, -20);
            dab({42, 61}, 30);
            EXPECT_EQ(wanted, columnsInside());
            EXPECT_LT(session->selectionRect.left, -25);
        }
    }
}

// ---- short memory

TEST_F(SelectionStates, AChangeHappensWholeOrNotAtAllWhenMemoryIsShort)
{
    struct Step {
        const char* name;
        std::function<void()> run;
        bool needsNoMemory = false;
    };
    const Step steps[] = {
        {"move", [&] { moveSelectionBy(3, -4); }, true},
        {"resize", [&] { resizeBy(31, -12); }},
        {"turn", [&] { rotateSelectionBy(33); }},
        {"turn back", [&] { rotateSelectionBy(-session->selectionRotation); }},
        {"flip", [&] { click(HIT_FLIP_HORIZONTAL); }},
        {"flip vertically", [&] { click(HIT_FLIP_VERTICAL); }},
        {"hue", [&] { click(HIT_HUE_UP); }},
        {"lift", [&] { click(HIT_LIFT_UP); }},
        {"reshape",
         [&] {
             dab({session->selectionRect.left + 20, session->selectionRect.top + 20}, 22);
         }},
    };
    openPhoto(200, 150);
    const auto prepare = [&] {
        draw(shape);
        resizeBy(6, 9);
        click(HIT_DARKER);
        rotateSelectionBy(25);
    };
    for (const Step& step : steps) {
        prepare();
        const Bytes before = wholeSelection();
        step.run();
        const Bytes after = wholeSelection();
        ASSERT_FALSE(before == after) << step.name;
        int allocations = 0, refused = 0;
        for (bool wantedMore = true; wantedMore && allocations < 300; ++allocations) {
            SCOPED_TRACE(testing::Message() << step.name << " with memory for " << allocations << " allocations");
            prepare();
            ASSERT_TRUE(before == wholeSelection());
            wantedMore = runShortOfMemory(allocations, step.run);
            const Bytes now = wholeSelection();
            ASSERT_TRUE(now == after || (wantedMore && now == before));
            refused += now == before;
            ASSERT_TRUE(showsPicture(image, picture));
        }
        EXPECT_LT(allocations, 300) << step.name;
        if (!step.needsNoMemory) {
            EXPECT_GT(refused, 0) << step.name;
        }
    }
}

// ---- cleared while it is dragged

TEST_F(SelectionStates, ClearingEndsADragInEveryField)
{
    openPhoto(200, 150);
    for (const int hit : {HIT_INSIDE, HIT_BOTTOM_RIGHT, HIT_ROTATE}) {
        SCOPED_TRACE(hit);
        draw(shape);
        const RECT& rect = session->selectionRect;
        POINT at = {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
        if (hit != HIT_INSIDE) {
            const RECT& button = hit == HIT_ROTATE ? session->rotateButton : session->bottomRightHandle;
            at = {(button.left + button.right) / 2, (button.top + button.bottom) / 2};
        }
        pressButton(session->canvasWindow, at);
        ASSERT_EQ((uint32_t)hit, session->selectionHitCode);
        movePointer(session->canvasWindow, {at.x + 9, at.y + 7}, true);
        ASSERT_TRUE(session->trackingSelection || session->rotatingSelection);
        clearSelection();
        EXPECT_EQ(0u, session->trackingSelection);
        EXPECT_EQ(0u, session->rotatingSelection);
        EXPECT_EQ(0u, session->selectionHitCode);
        movePointer(session->canvasWindow, {at.x + 19, at.y + 3}, true);
        releaseButton(session->canvasWindow, {at.x + 19, at.y + 3});
        EXPECT_EQ(0u, session->selectionActive);
        EXPECT_TRUE(IsRectEmpty(&session->selectionRect));
        EXPECT_TRUE(showsPicture(image, picture));
    }
}

// ---- large selections

static const std::vector<POINT> largeShape = {{20, 15}, {400, 30}, {410, 340}, {200, 180}, {30, 345}, {15, 60}};

struct LargeSelection : SelectionStates {
    // An operation does what it does to bitmaps of its own, and nothing to those that it started from.
    void expectUnharmed(const std::function<void()>& run)
    {
        const SessionRecord& s = *session;
        for (HGLOBAL SessionRecord::*kept : {&SessionRecord::selectionImageSource, &SessionRecord::selectionMaskSource,
                                             &SessionRecord::referenceImageA, &SessionRecord::referenceMaskB}) {
            const HGLOBAL block = s.*kept;
            const Bytes before = bytesOf(block);
            run();
            if (s.*kept == block) {
                EXPECT_EQ(before, bytesOf(block));
            }
        }
    }

    // What a colour step should show, from copies of the unadjusted bitmaps.
    Bytes adjusted(const ColourValues& values)
    {
        const HGLOBAL shown = duplicateBitmap(session->selectionImageSource, 1);
        const HGLOBAL mask = duplicateBitmap(session->selectionMaskSource, 1);
        EXPECT_TRUE(applyColourAdjustment(session->selectionImageSource, shown, mask, mask, values));
        const Bytes bytes = bytesOf(shown);
        GlobalFree(shown);
        GlobalFree(mask);
        return bytes;
    }
};

TEST_F(LargeSelection, ItsEqualBitmapsAreOneBlock)
{
    openPhoto(430, 360);
    draw(largeShape);
    const SessionRecord& s = *session;
    for (const HGLOBAL image : {s.selectionImage, s.referenceImageA, s.referenceImageB})
        EXPECT_EQ(s.selectionImageSource, image);
    for (const HGLOBAL mask : {s.selectionMask, s.referenceMaskA, s.referenceMaskB})
        EXPECT_EQ(s.selectionMaskSource, mask);
    const HGLOBAL image = s.selectionImage;
    clearSelection();
    releaseKeptBlocks();
    EXPECT_EQ((UINT)GMEM_INVALID_HANDLE, GlobalFlags(image));
}

TEST_F(LargeSelection, NoOperationWritesToASharedBlock)
{
    openPhoto(430, 360);
    draw(largeShape);
    const Bytes unadjusted = bytesOf(session->selectionImageSource);
    expectUnharmed([&] { click(HIT_HUE_UP); });
    EXPECT_EQ(adjusted({0, 0, 50, 12, 0}), bytesOf(session->selectionImage));
    EXPECT_NE(unadjusted, bytesOf(session->selectionImage));
    for (int n = 0; n < 4; ++n)
        click(HIT_HUE_DOWN);
    EXPECT_EQ(unadjusted, bytesOf(session->selectionImage));
    for (const int hit : {HIT_FLIP_HORIZONTAL, HIT_FLIP_VERTICAL, HIT_LIFT_UP, HIT_APPLY})
        expectUnharmed([&] { click(hit); });
    expectUnharmed([&] { rotateSelectionBy(90); });
    expectUnharmed([&] { resizeBy(3, -2); });
    expectUnharmed([&] { dab({200, 180}, 40); });
}

TEST_F(LargeSelection, MemoryRunningOutChangesAllOfItOrNothing)
{
    const std::function<void()> steps[] = {
        [&] { click(HIT_BRIGHTER); },
        [&] { click(HIT_FLIP_VERTICAL); },
        [&] { rotateSelectionBy(17); },
    };
    openPhoto(430, 360);
    for (const std::function<void()>& step : steps) {
        draw(largeShape);
        const Bytes before = wholeSelection();
        int refused = 0;
        for (bool wantedMore = true; wantedMore && wholeSelection() == before && refused < 100; ++refused) {
            runShortOfMemory(0, [] { free(takeMemory(1)); });  // what is kept would help out
            wantedMore = runShortOfMemory(refused, step);
        }
        EXPECT_LT(1, refused);
        EXPECT_NE(before, wholeSelection());
    }
}
