// What a session should have painted: replays the canvas messages that its thread really retrieved (not
// the path that the test intended: the system may merge moves) through an independent telling of the Brush.
#pragma once

#include "tests/reference/painting_reference.h"
#include "tests/session/session_driver.h"

// The palette's settings. A test sets them at the moment at which it changes them in the palette.
struct BrushSettings {
    bool chosen = false;  // false: no tool
    int width = 16, height = 16;
    int shape = 0;  // 0 circle, 1 rectangle
    bool soft = false;
    int opacity = 100;
    reference::Pixel colour = {0xC0, 0xC0, 0xFF};
};

struct StrokeReplay {
    BrushSettings brush;
    reference::Scene scene;
    std::vector<uint8_t> before;  // the whole block at the start
    bool hasCoverage = false;     // a stroke has begun in this session
    bool pointerInside = false;   // between the first move over the canvas and POINTER_LEFT
    POINT strokePoint = {0, 0};
    SIZE client = {0, 0};       // canvas size that points are scaled from
    int zoom = 0;               // while zoomed: screen pixels for an image pixel; then points count by this
    POINT zoomOrigin = {0, 0};  // where the image's corner lies then, client pixels
    size_t nextMessage = 0;
};

StrokeReplay beginReplay(const Host& host, const HostImage& image);

// Replays what was retrieved since the last call, with the settings as they are. To be called before the
// settings or the size of the canvas change.
void replayNew(StrokeReplay* replay, const Host& host);
void takeCanvasSize(StrokeReplay* replay, const Host& host);

// The block as it should be: header, padding and guard as at the start, pixels as painted.
std::vector<uint8_t> expectedBlock(const StrokeReplay& replay);

// Fails the test with the first pixel that differs. Also replays what is new.
void expectPainted(StrokeReplay* replay, const Host& host, const HostImage& image);

// Number of pixels that the replay has changed: a test that painted nothing proves nothing.
int changedPixels(const StrokeReplay& replay);
