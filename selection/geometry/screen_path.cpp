#include "selection/geometry/screen_path.h"

#include <algorithm>
#include <cstdlib>

int pixelsBetween(PixelPoint a, PixelPoint b)
{
    return std::max(abs(a.x - b.x), abs(a.y - b.y));
}

int dropRepeats(PixelPoint* points, int count)
{
    int kept = std::min(count, 1);
    for (int i = 1; i < count; ++i) {
        const PixelPoint last = points[kept - 1];
        if (points[i].x != last.x || points[i].y != last.y) points[kept++] = points[i];
    }
    return kept;
}

// From one point where the dots begin anew to the next one, or to the line's end.
struct Stretch {
    int last;
    bool reaches;  // into the part that is seen
};

static Stretch stretchFrom(const PathWalk& walk)
{
    const PixelPoint* const points = walk.points;
    PixelRect box = {points[walk.at].x, points[walk.at].y, points[walk.at].x, points[walk.at].y};
    int last = walk.at, length = 0;
    while (last + 1 < walk.count) {
        ++last;
        length += pixelsBetween(points[last - 1], points[last]);
        box = {std::min(box.left, points[last].x), std::min(box.top, points[last].y),
               std::max(box.right, points[last].x), std::max(box.bottom, points[last].y)};
        if (length % DOT_PERIOD == 0) break;
    }
    const PixelRect& seen = walk.seen;
    return {last, box.left < seen.right && box.right >= seen.left && box.top < seen.bottom && box.bottom >= seen.top};
}

bool nextPiece(PathWalk& walk, PathPiece& piece)
{
    int first = -1;
    while (walk.at + 1 < walk.count) {
        const Stretch stretch = stretchFrom(walk);
        if (!stretch.reaches && first >= 0) break;
        if (first < 0 && stretch.reaches) first = walk.at;
        walk.at = stretch.last;
    }
    if (first < 0) return false;
    piece = {first, walk.at + 1};
    return true;
}
