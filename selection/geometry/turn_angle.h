// How far the pointer has turned what it drags around a centre. Whole rounds count; angles are degrees,
// counter-clockwise positive.
#pragma once

#include "image/pixels/bits_view.h"
#include "session/ground/angle_track.h"

AngleTrack beginAngle(PixelPoint centre, PixelPoint pointer);

// Takes the shorter way from the last pointer position, at most half a turn.
void trackAngle(AngleTrack& track, PixelPoint pointer);

double trackedAngle(const AngleTrack& track);

// Truncated toward zero.
int trackedDegrees(const AngleTrack& track);

// The sum, less one turn when it is beyond -360..360. A selection whose rotation % 360 is 0 is unturned.
int addRotation(int rotation, int degrees);
