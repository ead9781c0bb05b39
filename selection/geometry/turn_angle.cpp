#include "selection/geometry/turn_angle.h"

#include <cmath>

static bool angleOf(PixelPoint centre, PixelPoint pointer, double& degrees)
{
    if (pointer.x == centre.x && pointer.y == centre.y) return false;
    const double pi = 3.14159265358979323846;
    degrees = atan2((double)centre.y - pointer.y, (double)pointer.x - centre.x) * 180 / pi;
    return true;
}

AngleTrack beginAngle(PixelPoint centre, PixelPoint pointer)
{
    AngleTrack track = {centre, 0, 0, 0, false};
    track.begun = angleOf(centre, pointer, track.first);
    track.current = track.first;
    return track;
}

void trackAngle(AngleTrack& track, PixelPoint pointer)
{
    double angle;
    if (!angleOf(track.centre, pointer, angle)) return;
    if (!track.begun) {
        track = beginAngle(track.centre, pointer);
        return;
    }
    if (angle - track.current > 180) track.rounds--;
    if (angle - track.current < -180) track.rounds++;
    track.current = angle;
}

double trackedAngle(const AngleTrack& track)
{
    return 360.0 * track.rounds + track.current - track.first;
}

int trackedDegrees(const AngleTrack& track)
{
    // Differences of angles that should be whole may fall short by rounding.
    const double angle = trackedAngle(track), slack = angle < 0 ? -1e-9 : 1e-9;
    return (int)(angle + slack);
}

int addRotation(int rotation, int degrees)
{
    const int sum = rotation + degrees;
    return sum > 360 ? sum - 360 : sum < -360 ? sum + 360 : sum;
}
