// The value that follows a turning drag: selection/geometry/turn_angle.h reads and changes it.
#pragma once

#include "image/pixels/bits_view.h"

// A drag around a centre. Angles are degrees, counter-clockwise positive.
struct AngleTrack {
    PixelPoint centre;
    double first, current;  // angles of the pointer, -180..180
    int rounds;             // whole rounds between them
    bool begun;             // false until the pointer was somewhere else than at the centre
};
