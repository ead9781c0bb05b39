// The geometry of moving, resizing, turning and flipping a selection. No windows: sizes of the system's
// frames come in as numbers. Points and rectangles are image pixels, except those of the rubber band,
// which are client coordinates of the window that it is drawn on.
#pragma once

#include "image/pixels/bits_view.h"
#include "selection/geometry/frame_layout.h"
#include "selection/geometry/outline.h"
#include "session/ground/angle_track.h"

// ---- points

// Adds (dx, dy) to every point and raises each coordinate to at least 1.
void movePoints(PixelPoint* points, int count, int dx, int dy);

// Maps the points of a reference state, whose selection has rectangle `reference`, to rectangle
// `target`. Divisions truncate toward zero; points that all share a coordinate go to the side where
// the box begins. `points` and `scaled` may be the same array.
void scalePoints(const PixelPoint* points, int count, PixelRect reference, PixelRect target, PixelPoint* scaled);

// Mirrors the points within their own bounding box.
void flipPointsVertically(PixelPoint* points, int count);
void flipPointsHorizontally(PixelPoint* points, int count);

// A turn by whole degrees, counter-clockwise positive, about the middle of a bounding box (which may
// lie between two pixels).
struct Turn {
    double centreX, centreY;
    double cosine, sine;
};

Turn turnAbout(PointBox box, int degrees);

// Turned coordinates are rounded toward zero.
void turnPoints(const PixelPoint* points, int count, const Turn& turn, PixelPoint* turned);

// ---- pixels of a turned selection

struct PlacedImage {
    BitsView pixels;  // unadjusted
    BitsView mask;    // the same size; red 0 is inside
    PixelRect rect;   // its place, image pixels
};

// Fills `target` wherever its mask is inside; other pixels become black. Each pixel is turned back into
// the source and weighted bilinearly from the up to four pixels around that place that are inside the
// source's mask, so that nothing from outside the outline bleeds in. Where none of the four is inside
// (the turned outline is rounded to whole pixels), the nearest inside pixel within TURN_SEARCH is taken,
// and black beyond that. `turn` is the turn from the source to the target.
//
// A pixel (x, y) stands for the point (x + 1/2, y - 1/2) of the plane in which outlines are drawn: a
// span begins AT its crossing, and a step between two rows belongs to the lower one.
constexpr int TURN_SEARCH = 4;
void turnPixels(const PlacedImage& target, const PlacedImage& source, const Turn& turn);

// ---- angles

AngleTrack beginAngle(PixelPoint centre, PixelPoint pointer);

// Takes the shorter way from the last pointer position, at most half a turn.
void trackAngle(AngleTrack& track, PixelPoint pointer);

double trackedAngle(const AngleTrack& track);

// Truncated toward zero.
int trackedDegrees(const AngleTrack& track);

// The sum, less one turn when it is beyond -360..360. A selection whose rotation % 360 is 0 is unturned.
int addRotation(int rotation, int degrees);

// ---- rubber band

// Distance from the pointer to what it drags: the band's corner when it is moved, else the sides that
// the hit code drags.
PixelPoint bandGrabOffset(PixelRect band, int hit, PixelPoint pointer);

// The band with its size, following the pointer within the client rectangle. On systems whose two frame
// sizes differ, the left side is tested with one of them and set with the other:
// it decides where a dragged band stops.
PixelRect moveBand(PixelRect band, PixelPoint grab, PixelPoint pointer, PixelRect client, FrameMetrics metrics);

// The band with the sides that the hit code drags following the pointer. At least 6 more than
// (extraWidth, extraHeight) in size before the client rectangle's margins are applied.
struct BandResize {
    int hit;
    int extraWidth, extraHeight;
};
PixelRect resizeBand(PixelRect band, BandResize resize, PixelPoint grab, PixelPoint pointer, PixelRect client,
                     FrameMetrics metrics);
