// What the selection keeps between two messages besides the record's fields. It lives as long as the
// selection, or the outline being drawn: clearSelection makes all of it zero.
#pragma once

#include <windows.h>

#include "image/pixels/bits_view.h"
#include "session/ground/angle_track.h"

// How far an outline being drawn is on the screen.
struct OutlineDots {
    RECT place;      // of the image, device units, when it was drawn: else it is to be drawn again
    int start, end;  // the last point where the dots begin anew, and the last one that is drawn
    int length;      // of the line up to there, device units
};

struct SelectionProgress {
    PixelPoint* dabbedFrom;  // owned: the shown points from before the outline brush's press, or null
    PixelPoint tableOrigin;  // the image pixel that the outline brush's working table counts from
    OutlineDots dots;
    RECT painted;           // where the selection is on the screen, image pixels; empty: nowhere
    RECT bandStart;         // of a running move or resize, as trackRect
    PixelPoint pressed;     // and where its button went down, client pixels of the host dialog
    AngleTrack angle;       // of a running turn
    POINT rotatedFrame[5];  // the turned frame on the screen, closed, image pixels
};
