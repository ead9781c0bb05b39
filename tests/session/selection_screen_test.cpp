// What is on the screen equals a full repaint, however small the selection is and whatever is done to it.
#include <random>

#include "tests/session/screen_picture.h"
#include "tests/session/selection_fixture.h"

// Fifths of the photo's size up to twice as large, in a canvas of about 400 x 300.
static const Size scales[] = {{"0.2", 2000, 1500, 400, 300}, {"0.37", 1080, 810, 400, 300}, {"0.5", 800, 600, 400, 300},
                              {"0.73", 548, 411, 400, 300},  {"1", 400, 300, 400, 300},     {"1.5", 266, 200, 399, 300},
                              {"2", 200, 150, 400, 300}};

struct SelectionScreen : SelectionSession {
    std::mt19937 random = std::mt19937(5);

    int between(int least, int most) { return least + (int)(random() % (unsigned)(most - least + 1)); }

    // A square on its corner, `size` screen pixels wide and high.
    void drawAround(POINT at, int size)
    {
        const LONG upper = size / 2, lower = size - upper;
        ASSERT_TRUE(drawStroke(
            &host, {{at.x, at.y - upper}, {at.x + lower, at.y}, {at.x, at.y + lower}, {at.x - upper, at.y}}));
    }

    void expectRepainted(const char* when) { EXPECT_TRUE(showsWhatAFullRepaintShows(&host)) << when; }

    void repaintPart(const RECT& part)
    {
        runOnHost(&host, [&] {
            InvalidateRect(host.canvas, &part, FALSE);
            UpdateWindow(host.canvas);
        });
        settle(&host);
    }

    void repaintAll()
    {
        runOnHost(&host, [&] {
            InvalidateRect(host.canvas, nullptr, FALSE);
            UpdateWindow(host.canvas);
        });
        settle(&host);
    }
};

TEST_F(SelectionScreen, SmallSelectionsLeaveNoPieceOfTheirFrame)
{
    const int drawnSizes[] = {3, 5, 8, 13, 20, 28, 36, 45, 60};
    for (const Size& scale : scales) {
        openAt(scale);
        for (const int size : drawnSizes) {
            SCOPED_TRACE(testing::Message() << "scale " << scale.name << ", " << size << " pixels");
            const POINT middle = {200 + between(-9, 9), 150 + between(-9, 9)};
            drawAround(middle, size);
            expectRepainted("drawing");
            // Whatever part of the frame lies there: the middle, the corners and the sides.
            const int reach = size / 2 + 5;
            for (const POINT by : {POINT{0, 0}, POINT{-reach, -reach}, POINT{reach, reach}, POINT{reach, 0},
                                   POINT{0, -reach}, POINT{between(-40, 40), between(-40, 40)}}) {
                const POINT from = {middle.x + by.x, middle.y + by.y};
                ASSERT_TRUE(drawStroke(&host, {from, {from.x + between(-30, 30), from.y + between(-30, 30)}}));
                expectRepainted("dragging");
            }
            if (HasFailure()) savePicture("a piece is left");
            ASSERT_TRUE(clickControl(&host, ID_BRUSH));  // a painting tool drops the selection
            ASSERT_TRUE(clickControl(&host, ID_SELECTION));
            expectRepainted("dropping");
            if (HasFailure()) return;
        }
        closeSession();
    }
}

// The closing line runs along one row and back: dots far outside the rectangle.
TEST_F(SelectionScreen, ADottedSpikeGoesWithItsSelection)
{
    for (const Size& scale : scales) {
        SCOPED_TRACE(scale.name);
        openAt(scale);
        ASSERT_TRUE(drawStroke(&host, {{150, 100}, {180, 100}, {180, 130}, {330, 130}, {180, 130}, {150, 130}}));
        expectRepainted("drawing");
        ASSERT_TRUE(drawStroke(&host, {{165, 115}, {140, 160}}));
        expectRepainted("dragging");
        ASSERT_TRUE(drawStroke(&host, {{140, 160}, {170, 80}}));
        expectRepainted("dragging back");
        ASSERT_TRUE(clickControl(&host, ID_BRUSH));
        expectRepainted("dropping");
        closeSession();
    }
}

TEST_F(SelectionScreen, ARepaintWhileSomethingIsDraggedKeepsWhatFollowsThePointer)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        const std::vector<uint8_t> before = shownBy(host.dialog).bytes;
        for (const int hit : {INSIDE, LEFT_EDGE, BOTTOM_RIGHT, ROTATE}) {
            SCOPED_TRACE(hit);
            const POINT at = clientOfHit(hit);
            ASSERT_TRUE(movePointerOnCanvas(&host, at.x, at.y));
            ASSERT_TRUE(pressButton(&host));
            for (const POINT by : {POINT{-23, 11}, POINT{-50, 30}, POINT{17, 22}}) {
                ASSERT_TRUE(movePointerOnCanvas(&host, at.x + by.x, at.y + by.y));
                const std::vector<uint8_t> dragged = shownBy(host.dialog).bytes;
                repaintPart({101, 97, 250, 203});
                EXPECT_TRUE(dragged == shownBy(host.dialog).bytes) << "after a repaint of a part";
                repaintAll();
                EXPECT_TRUE(dragged == shownBy(host.dialog).bytes) << "after a repaint of everything";
            }
            ASSERT_TRUE(movePointerOnCanvas(&host, at.x, at.y));
            ASSERT_TRUE(releaseButton(&host));
            EXPECT_TRUE(before == shownBy(host.dialog).bytes) << "nothing is left of it";
        }
        closeSession();
    }
}

TEST_F(SelectionScreen, ARepaintWhileAnOutlineIsDrawnKeepsItsDots)
{
    for (const Size& scale : scales) {
        SCOPED_TRACE(scale.name);
        openAt(scale);
        ASSERT_TRUE(movePointerOnCanvas(&host, 200, 150));
        ASSERT_TRUE(pressButton(&host));
        for (int i = 0; i < 12; ++i) {
            ASSERT_TRUE(movePointerOnCanvas(&host, 200 + between(-150, 150), 150 + between(-120, 120)));
            if (i % 3 == 1) repaintPart({131, 77, 250, 183});
            expectRepainted("drawing");
        }
        ASSERT_TRUE(releaseButton(&host));
        expectRepainted("closing");
        closeSession();
    }
}

// ---- a band that ends where it began

static const int bandHits[] = {INSIDE,    LEFT_EDGE,   RIGHT_EDGE,  TOP_EDGE,    TOP_LEFT,
                               TOP_RIGHT, BOTTOM_EDGE, BOTTOM_LEFT, BOTTOM_RIGHT};

TEST_F(SelectionScreen, ABandThatEndsWhereItBeganChangesNothingAtAnyScale)
{
    const std::vector<POINT> large = {{90, 70}, {310, 64}, {301, 230}, {200, 180}, {95, 221}};
    for (const Size& scale : scales) {
        SCOPED_TRACE(scale.name);
        openAt(scale);
        draw(large);
        const std::vector<uint8_t> shown = shownBy(host.canvas).bytes;
        for (const int hit : bandHits) {
            SCOPED_TRACE(hit);
            press(hit);
            EXPECT_TRUE(shown == shownBy(host.canvas).bytes) << "a click";
            const POINT at = clientOfHit(hit);
            ASSERT_TRUE(drawStroke(&host, {at, {at.x + 21, at.y - 17}, {at.x - 9, at.y + 4}, at}));
            EXPECT_TRUE(shown == shownBy(host.canvas).bytes) << "away and back";
        }
        apply();
        expectPhoto("where it was drawn");
        EXPECT_TRUE(model.before == snapshot(photo));
        closeSession();
    }
}

// A resize would begin from the turned shape, and turning back would no longer lead to the drawn pixels.
TEST_F(SelectionScreen, ABandThatEndsWhereItBeganKeepsTheTurn)
{
    for (const Size& size : sizes) {
        SCOPED_TRACE(size.name);
        openAt(size);
        draw(star);
        dragTurn(37);
        turnModel(&model, 37);
        for (const int hit : bandHits)
            press(hit);
        dragTurn(-37);
        turnModel(&model, 0);
        apply();
        EXPECT_TRUE(model.before == snapshot(photo));
        closeSession();
    }
}

// ---- cleared while it is dragged

// However the selection goes while the button is down, its release finds nothing to do.
TEST_F(SelectionScreen, ASelectionDroppedWhileItIsDraggedLeavesNothing)
{
    openAt(sizes[1]);
    ASSERT_TRUE(movePointerOnCanvas(&host, 5, 5));
    const std::vector<uint8_t> before = shownBy(host.canvas).bytes;
    for (const int hit : {INSIDE, RIGHT_EDGE, TOP_LEFT, ROTATE}) {
        SCOPED_TRACE(hit);
        draw(star);
        const POINT at = clientOfHit(hit);
        ASSERT_TRUE(movePointerOnCanvas(&host, at.x, at.y));
        ASSERT_TRUE(pressButton(&host));
        ASSERT_TRUE(movePointerOnCanvas(&host, at.x - 60, at.y + 40));
        runOnHost(&host, [&] { SendMessageA(host.palette, WM_COMMAND, ID_BRUSH, 0); });
        ASSERT_TRUE(settle(&host));  // the brush shows at the pointer from some moment on: nothing to compare yet
        ASSERT_TRUE(movePointerOnCanvas(&host, at.x - 30, at.y + 70));
        ASSERT_TRUE(releaseButton(&host));
        ASSERT_TRUE(clickControl(&host, ID_SELECTION));
        EXPECT_TRUE(before == shownBy(host.canvas).bytes) << "released";
    }
    draw(star);  // all is as at the first time
    dragInside(40, 20);
    apply();
    expectPhoto("after it");
    closeSession();
}
