// The selection as the canvas drives it: presses, moves and releases with the Selection tool, and the
// operations of its frame.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "image/bitmap_block.h"
#include "image/packed_bitmap.h"
#include "selection/geometry/frame_layout.h"
#include "selection/geometry/outline.h"
#include "selection/clear_selection.h"
#include "selection/outline_brush_tool.h"
#include "selection/selection.h"
#include "selection/selection_frame.h"
#include "selection/selection_state.h"
#include "selection/stored_selection.h"
#include "tests/unit/windowed/block_bytes.h"
#include "tests/unit/windowed/selection_tool_fixture.h"

static COLORREF colourAt(HGLOBAL image, int x, int y)
{
    COLORREF colour = 0xFFFFFFFF;
    getPixelColour(image, x, y, &colour);
    return colour;
}

static bool insideMask(int x, int y)
{
    return (colourAt(session->selectionMask, x, y) & 0xFF) == 0;
}

static int insideCount()
{
    int count = 0;
    const RECT& r = session->selectionRect;
    for (int y = 0; y < r.bottom - r.top; ++y)
        for (int x = 0; x < r.right - r.left; ++x)
            count += insideMask(x, y);
    return count;
}

// What the selection is made of: everything that an operation and its reverse must bring back.
struct Snapshot {
    std::vector<uint8_t> image, mask, source, maskSource;
    RECT rect;
    bool operator==(const Snapshot& other) const
    {
        return image == other.image && mask == other.mask && source == other.source && maskSource == other.maskSource &&
               EqualRect(&rect, &other.rect);
    }
};

static Snapshot snapshot()
{
    return {bytesOf(session->selectionImage), bytesOf(session->selectionMask), bytesOf(session->selectionImageSource),
            bytesOf(session->selectionMaskSource), session->selectionRect};
}

// The picture with the floating pixels laid in at the selection's place, clipped to it.
static reference::Picture withSelection(reference::Picture picture)
{
    const RECT& r = session->selectionRect;
    for (int y = r.top; y < r.bottom; ++y) {
        for (int x = r.left; x < r.right; ++x) {
            if (x < 0 || y < 0 || x >= picture.width || y >= picture.height) continue;
            if (!insideMask(x - r.left, y - r.top)) continue;
            const COLORREF colour = colourAt(session->selectionImage, x - r.left, y - r.top);
            reference::Pixel& pixel = picture.at(x, y);
            pixel.red = GetRValue(colour);
            pixel.green = GetGValue(colour);
            pixel.blue = GetBValue(colour);
        }
    }
    return picture;
}

TEST_F(SelectionTool, LiftsThePixelsInsideAndLeavesTheImage)
{
    openPhoto(120, 90);
    drawShape();
    ASSERT_EQ(1u, session->selectionActive);
    const RECT& r = session->selectionRect;
    EXPECT_GT(insideCount(), 1000);
    for (int y = r.top; y < r.bottom; ++y) {
        for (int x = r.left; x < r.right; ++x) {
            const COLORREF expected = insideMask(x - r.left, y - r.top) ? colorrefOf(picture.at(x, y)) : 0;
            ASSERT_EQ(expected, colourAt(session->selectionImage, x - r.left, y - r.top)) << x << "," << y;
        }
    }
    EXPECT_TRUE(insideMask(50 - r.left, 35 - r.top));
    EXPECT_FALSE(insideMask(50 - r.left, 60 - r.top));  // the notch between the two lower corners
    EXPECT_TRUE(showsPicture(image, picture));
}

TEST_F(SelectionTool, AnOutlineThatEnclosesNothingLeavesNothing)
{
    openPhoto(120, 90);
    draw({{40, 40}});
    EXPECT_EQ(0u, session->selectionActive);
    EXPECT_EQ(nullptr, session->outlinePoints);
    draw({{20, 40}, {80, 40}});  // along one row: no crossing
    EXPECT_EQ(0u, session->selectionActive);
    EXPECT_EQ(nullptr, session->rowCrossings);
    EXPECT_TRUE(IsRectEmpty(&session->selectionRect));
    drawShape();
    EXPECT_EQ(1u, session->selectionActive);
}

TEST_F(SelectionTool, APressOutsideTheFrameDoesNothingWhileOneFloats)
{
    openPhoto(160, 120);
    drawShape();
    const Snapshot before = snapshot();
    draw({{140, 100}, {150, 105}, {145, 110}});
    EXPECT_TRUE(before == snapshot());
}

TEST_F(SelectionTool, ApplyWritesTheMovedPixelsAndCanBeRepeated)
{
    openPhoto(120, 90);
    drawShape();
    click(HIT_APPLY);
    EXPECT_TRUE(showsPicture(image, picture));  // in its own place nothing changes
    reference::Picture expected = picture;
    for (const POINT step : {POINT{12, 9}, POINT{-30, 5}, POINT{70, -40}}) {  // the last one hangs over
        moveSelectionBy(step.x, step.y);
        EXPECT_TRUE(showsPicture(image, expected));  // moving writes nothing
        expected = withSelection(expected);
        click(HIT_APPLY);
        ASSERT_TRUE(showsPicture(image, expected));
    }
}

TEST_F(SelectionTool, ResizingOutAndBackChangesNoPixel)
{
    openPhoto(200, 150);
    drawShape();
    const Snapshot before = snapshot();
    for (const RECT larger : {RECT{10, 10, 190, 140}, RECT{29, 19, 60, 50}, RECT{5, 30, 100, 45}}) {
        resizeSelectionTo(larger);
        EXPECT_TRUE(EqualRect(&larger, &session->selectionRect));
        EXPECT_FALSE(before == snapshot());
    }
    resizeSelectionTo(before.rect);
    EXPECT_TRUE(before == snapshot());
}

TEST_F(SelectionTool, AWholeNumberOfTurnsGivesTheSamePixels)
{
    openPhoto(200, 150);
    drawShape();
    moveSelectionBy(40, 30);
    click(HIT_BRIGHTER);
    click(HIT_HUE_UP);
    const Snapshot before = snapshot();
    for (int i = 0; i < 4; ++i) {
        rotateSelectionBy(90);
        if (i < 3) {
            EXPECT_FALSE(before == snapshot());
        }
    }
    EXPECT_TRUE(before == snapshot());
    for (int i = 0; i < 24; ++i)
        rotateSelectionBy(-15);
    EXPECT_TRUE(before == snapshot());
}

TEST_F(SelectionTool, AMoveKeepsTheTurn)
{
    openPhoto(220, 160);
    drawShape();
    moveSelectionBy(40, 30);
    const Snapshot before = snapshot();
    rotateSelectionBy(37);
    moveSelectionBy(11, -7);
    rotateSelectionBy(-37);
    moveSelectionBy(-11, 7);
    EXPECT_TRUE(before == snapshot());
}

// The system reports moves to where the pointer is already. A band over the border, which a drag would pull
// inside, stays.
TEST_F(SelectionTool, AMoveToTheSamePointLeavesASelectionThatHangsOverTheBorder)
{
    openPhoto(120, 90);
    draw({{20, 10}, {110, 10}, {110, 80}, {20, 80}});
    moveSelectionBy(-60, 0);
    const Snapshot before = snapshot();
    const POINT at = {15, 45};
    ASSERT_LT(session->selectionRect.left, 0);
    for (const bool moves : {true, false}) {
        pressButton(session->canvasWindow, at);
        ASSERT_EQ(1u, session->trackingSelection);
        movePointer(session->canvasWindow, at, true);
        EXPECT_TRUE(before.rect.left == session->trackRect.left);
        if (moves) movePointer(session->canvasWindow, {at.x + 9, at.y}, true);
        releaseButton(session->canvasWindow, at);
        EXPECT_EQ(moves, before.rect.left != session->selectionRect.left);
        if (moves) moveSelectionBy(before.rect.left - session->selectionRect.left, 0);
    }
    EXPECT_TRUE(before == snapshot());
}

TEST_F(SelectionTool, ColourStepsAndBackGiveTheEarlierPixels)
{
    openPhoto(120, 90);
    drawShape();
    const Snapshot before = snapshot();
    const int pairs[][2] = {{HIT_BRIGHTER, HIT_DARKER},
                            {HIT_HUE_UP, HIT_HUE_DOWN},
                            {HIT_SATURATION_MORE, HIT_SATURATION_LESS},
                            {HIT_CONTRAST_MORE, HIT_CONTRAST_LESS},
                            {HIT_LIFT_UP, HIT_LIFT_DOWN}};
    for (const auto& pair : pairs) {
        for (int i = 0; i < 3; ++i)
            click(pair[0]);
        EXPECT_FALSE(before.image == snapshot().image) << pair[0];
        for (int i = 0; i < 3; ++i)
            click(pair[1]);
        EXPECT_TRUE(before == snapshot()) << pair[0];
    }
}

TEST_F(SelectionTool, ColoursAreAppliedOnceToWhateverWasDoneBefore)
{
    openPhoto(200, 150);
    drawShape();
    click(HIT_DARKER);
    resizeSelectionTo({10, 10, 150, 130});
    click(HIT_BRIGHTER);  // neutral again
    EXPECT_EQ(bytesOf(session->selectionImageSource), bytesOf(session->selectionImage));
}

TEST_F(SelectionTool, MirroringTwiceGivesTheSamePixels)
{
    openPhoto(120, 90);
    drawShape();
    const Snapshot before = snapshot();
    click(HIT_FLIP_HORIZONTAL);
    EXPECT_FALSE(before == snapshot());
    click(HIT_FLIP_HORIZONTAL);
    EXPECT_TRUE(before == snapshot());
}

TEST_F(SelectionTool, TheVerticalFlipIsOneRowOffOnPixelsAndMaskAlike)
{
    openPhoto(120, 90);
    drawShape();
    const HGLOBAL source = duplicateBitmap(session->selectionImageSource, 1);
    const HGLOBAL mask = duplicateBitmap(session->selectionMaskSource, 1);
    flipVertical(source);
    flipVertical(mask);
    click(HIT_FLIP_VERTICAL);
    EXPECT_EQ(bytesOf(source), bytesOf(session->selectionImageSource));
    EXPECT_EQ(bytesOf(mask), bytesOf(session->selectionMaskSource));
    GlobalFree(source);
    GlobalFree(mask);
}

TEST_F(SelectionTool, ClosingLeavesNothingBehind)
{
    openPhoto(120, 90);
    drawShape();
    rotateSelectionBy(20);
    click(HIT_CLOSE);
    EXPECT_EQ(0u, session->selectionActive);
    EXPECT_EQ(0, session->outlinePointCount);
    for (const void* left : {(const void*)session->outlinePoints, (const void*)session->outlineSnapshot,
                             (const void*)session->rowCrossings, (const void*)session->homeCrossings,
                             (const void*)session->referenceCrossingsA, (const void*)session->referenceCrossingsB,
                             (const void*)session->referencePointsA, (const void*)session->referencePointsB,
                             (const void*)session->selectionImage, (const void*)session->selectionMask,
                             (const void*)session->selectionImageSource, (const void*)session->selectionMaskSource,
                             (const void*)session->referenceImageA, (const void*)session->referenceMaskB}) {
        EXPECT_EQ(nullptr, left);
    }
    EXPECT_TRUE(IsRectEmpty(&session->frameInnerRect));
    EXPECT_TRUE(showsPicture(image, picture));
}

TEST_F(SelectionTool, AStoredSelectionComesBackAsItWas)
{
    openPhoto(120, 90);
    drawShape();
    const Snapshot before = snapshot();
    const int count = insideCount();
    const RECT& r = before.rect;
    const POINT centre = {r.left + (r.right - r.left) / 2, r.top + (r.bottom - r.top) / 2};
    const HGLOBAL pixels = duplicateBitmap(session->selectionImage, 1);
    const HGLOBAL mask = duplicateBitmap(session->selectionMask, 1);
    click(HIT_CLOSE);
    ASSERT_TRUE(placeStoredSelection(centre, pixels, mask));
    EXPECT_TRUE(before == snapshot());
    EXPECT_EQ(count, insideCount());
    click(HIT_APPLY);
    EXPECT_TRUE(showsPicture(image, picture));
}

TEST_F(SelectionTool, AMaskWithoutInsideCannotBePlaced)
{
    openPhoto(120, 90);
    const HGLOBAL pixels = createBitmap(5, 4, 24), mask = createBitmap(5, 4, 24);
    uint8_t* bits = lockBitmapBits(mask);
    memset(bits, 255, 16 * 4);
    unlockBitmap(mask);
    EXPECT_FALSE(placeStoredSelection({50, 40}, pixels, mask));
    EXPECT_EQ(nullptr, session->selectionImageSource);
}

TEST_F(SelectionTool, TheOutlineBrushAddsFromInsideAndCutsFromOutside)
{
    openPhoto(160, 120);
    draw({{40, 30}, {100, 30}, {100, 80}, {40, 80}});
    const int before = insideCount();
    session->currentTool = TOOL_OUTLINE_BRUSH;
    pressButton(session->canvasWindow, {98, 50});
    releaseButton(session->canvasWindow, {98, 50});
    const int larger = insideCount();
    EXPECT_GT(larger, before);
    pressButton(session->canvasWindow, {36, 60});
    releaseButton(session->canvasWindow, {36, 60});
    EXPECT_LT(insideCount(), larger);
    EXPECT_TRUE(showsPicture(image, picture));
    EXPECT_EQ(1u, session->selectionActive);
}

TEST_F(SelectionTool, TheOutlineBrushActsAtThePressAndItsPixelsFollowAtTheRelease)
{
    openPhoto(160, 120);
    draw({{40, 30}, {100, 30}, {100, 80}, {40, 80}});
    const Snapshot before = snapshot();
    const PointBox drawn = boxOfPoints(session->outlinePoints, session->outlinePointCount);
    session->currentTool = TOOL_OUTLINE_BRUSH;
    pressButton(session->canvasWindow, {98, 50});
    const PointBox pressed = boxOfPoints(session->outlinePoints, session->outlinePointCount);
    EXPECT_GT(pressed.maxX, drawn.maxX);
    EXPECT_EQ(pressed.maxX + 1, session->reshapeRect.right);
    EXPECT_TRUE(IsRectEmpty(&session->frameInnerRect));
    EXPECT_TRUE(before == snapshot());
    movePointer(session->canvasWindow, {80, 78}, true);  // one dab a press: moves reshape nothing
    releaseButton(session->canvasWindow, {80, 78});
    const PointBox released = boxOfPoints(session->outlinePoints, session->outlinePointCount);
    EXPECT_EQ(0, memcmp(&pressed, &released, sizeof pressed));
    EXPECT_EQ(pressed.maxX + 1, session->selectionRect.right);
    EXPECT_FALSE(IsRectEmpty(&session->frameInnerRect));
    EXPECT_EQ(1u, session->selectionReshaped);
    EXPECT_EQ(nullptr, session->rowCrossings);
}

TEST_F(SelectionTool, AnOutlineBrushThatMeetsNoPointChangesNothing)
{
    openPhoto(160, 120);
    draw({{40, 30}, {120, 30}, {120, 100}, {40, 100}});
    const Snapshot before = snapshot();
    session->currentTool = TOOL_OUTLINE_BRUSH;
    pressButton(session->canvasWindow, {80, 65});
    releaseButton(session->canvasWindow, {80, 65});
    EXPECT_TRUE(before == snapshot());
    EXPECT_FALSE(IsRectEmpty(&session->frameInnerRect));
}

TEST_F(SelectionTool, CuttingAwayAllThatIsEnclosedBringsTheOutlineBack)
{
    openPhoto(160, 120);
    // A small block with a tail, which encloses nothing.
    draw({{40, 40}, {46, 40}, {46, 43}, {110, 43}, {46, 43}, {46, 46}, {40, 46}});
    const Snapshot before = snapshot();
    const int points = session->outlinePointCount;
    session->currentTool = TOOL_OUTLINE_BRUSH;
    session->brushWidth = session->brushHeight = 30;
    pressButton(session->canvasWindow, {51, 46});
    EXPECT_NE(points, session->outlinePointCount);
    releaseButton(session->canvasWindow, {51, 46});
    EXPECT_TRUE(before == snapshot());
    EXPECT_EQ(points, session->outlinePointCount);
    EXPECT_FALSE(IsRectEmpty(&session->frameInnerRect));
    moveSelectionBy(5, 5);
    moveSelectionBy(-5, -5);
    EXPECT_TRUE(before == snapshot());
}

TEST_F(SelectionTool, CuttingEveryPointAwayClearsTheSelection)
{
    openPhoto(160, 120);
    draw({{40, 40}, {48, 40}, {48, 48}, {40, 48}});
    session->currentTool = TOOL_OUTLINE_BRUSH;
    session->brushWidth = session->brushHeight = 40;
    pressButton(session->canvasWindow, {52, 44});
    EXPECT_EQ(0u, session->selectionActive);
    EXPECT_EQ(nullptr, session->outlinePoints);
    releaseButton(session->canvasWindow, {52, 44});
    EXPECT_TRUE(IsRectEmpty(&session->selectionRect));
    EXPECT_TRUE(showsPicture(image, picture));
}
