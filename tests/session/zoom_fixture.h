// Sessions that zoom and pan with the real wheel, buttons and keys, over an image whose every pixel has a colour of
// its own: what the screen shows tells which pixel it shows where.
#pragma once

#include <string>

#include "tests/session/screen_part.h"
#include "tests/session/session_fixture.h"

// A pixel of the image, as told by its colour.
struct ShownPixel {
    int x, y;
};

struct ZoomSession : SessionTest {
    int clientWidth = 0, clientHeight = 0;
    std::wstring name;  // the title before anything is zoomed

    // A photo of own colours (at most 4096 x 4096) and an open session.
    void openOwnColours(int width, int height, int canvasWidth, int canvasHeight);
    void closeSession();  // checks that the original bytes are back

    std::wstring title() const;
    int percent() const;  // of the title; 0: none there

    bool turnWheel(int delta);  // at the pointer's place; 120 is a notch up
    bool tiltWheel(int delta);  // 120 is to the right
    bool tapKey(WORD key, std::vector<WORD> held = {});
    void holdKey(WORD key, bool down);
    bool pressMiddle();
    bool releaseMiddle();
    bool zoomTo(int percent);  // with the keys

    ShownPixel shownAt(int x, int y) const;
    // Where the image's corner lies, client pixels, at 100 % or a multiple: told by the blocks in the upper left.
    POINT imageCorner(int percent) const;
    // All of the canvas but the corners of the map shows the image at `percent`, whole pixels in their order, from
    // where it begins in the upper left on; and what it shows lies inside the image.
    void expectShown(int percent, const char* when) const;
    // Takes the pointer away, and with it the brush's picture, which goes when the session has seen it leave.
    void leaveCanvas();
    void expectRepaintChangesNothing(const char* when);  // leaves the canvas
};

ShownPixel pixelOfColour(const uint8_t* bgr);
