// A photo with the Selection tool on it, driven as the canvas drives it.
#pragma once

#include <vector>

#include "canvas/pointer_input.h"
#include "selection/selection_operations.h"
#include "tests/unit/windowed/session_fixture.h"

struct SelectionTool : SessionFixture {
    Dice dice = {7};
    reference::Picture picture;

    void openPhoto(int width, int height)
    {
        picture = randomPicture(dice, width, height);
        ASSERT_TRUE(open(picture));
        session->currentTool = TOOL_SELECTION;
    }

    void draw(const std::vector<POINT>& points)
    {
        pressButton(session->canvasWindow, points.front());
        for (const POINT& point : points)
            movePointer(session->canvasWindow, point, true);
        releaseButton(session->canvasWindow, points.back());
    }

    void drawShape() { draw({{30, 20}, {80, 25}, {95, 60}, {60, 70}, {50, 45}, {25, 60}}); }

    void click(int hit) { runSelectionOperation(session->canvasWindow, hit); }
};
