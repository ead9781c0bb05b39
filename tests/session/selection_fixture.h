// Sessions in which a freehand selection is drawn, and its frame pressed and dragged, with the real
// pointer, on a canvas that shows the photo at its own size, reduced to a half and enlarged 2.3 times.
#pragma once

#include "tests/session/screen_part.h"
#include "tests/session/selection_model.h"
#include "tests/session/session_fixture.h"

enum Hit {
    INSIDE = 1,
    APPLY = 3,
    FLIP_HORIZONTAL = 6,
    FLIP_VERTICAL = 7,
    DARKER = 8,
    BRIGHTER = 9,
    LEFT_EDGE = 10,
    RIGHT_EDGE = 11,
    TOP_EDGE = 12,
    TOP_LEFT = 13,
    TOP_RIGHT = 14,
    BOTTOM_EDGE = 15,
    BOTTOM_LEFT = 16,
    BOTTOM_RIGHT = 17,
    ROTATE = 101,
    HUE_DOWN = 102,
    HUE_UP = 103,
    SATURATION_MORE = 104,
    SATURATION_LESS = 105,
    CONTRAST_MORE = 106,
    CONTRAST_LESS = 107,
    LIFT_UP = 108,
    CLOSE = 109,
    LIFT_DOWN = 110
};

struct Size {
    const char* name;
    int photoWidth, photoHeight, clientWidth, clientHeight;
};

const Size sizes[] = {{"as large as the photo", 500, 400, 500, 400},
                      {"half as large", 1000, 800, 500, 400},
                      {"2.3 times as large", 300, 240, 690, 552}};

// Client points: a star with a notch on each side, around the middle of the smallest canvas.
extern const std::vector<POINT> star;

struct SelectionSession : SessionTest {
    SelectionModel model;

    void openAt(const Size& size);  // with the Selection tool chosen
    void draw(const std::vector<POINT>& clientPoints);
    void closeSession();  // checks that the original bytes are back

    POINT clientOfHit(int hit);
    void press(int hit);
    void apply();  // in the session and in the model
    void expectPhoto(const char* when);

    // Drags from a part of the frame by so many client pixels; the model follows.
    void dragInside(int dx, int dy);
    void dragSide(int hit, int dx, int dy);

    // Drags the rotation button around the middle of the drawn outline. The model does not follow.
    void dragTurn(int wantedDegrees);

private:
    POINT pixelCorner(POINT client);
    RECT dragBand(int hit, int dx, int dy);
    double angleOf(POINT client);
    POINT turnTarget(POINT grip, int wanted);
};
