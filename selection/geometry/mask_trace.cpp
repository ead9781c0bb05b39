#include "selection/geometry/mask_trace.h"

#include <cstdint>

#include "selection/geometry/outline.h"

struct Move {
    int dx, dy;  // dy downward
};

// Counter-clockwise from the upper left, as seen on the screen. The even ones are the diagonals.
static const Move moves[8] = {{-1, -1}, {-1, 0}, {-1, 1}, {0, 1}, {1, 1}, {1, 0}, {1, -1}, {0, -1}};
constexpr int MOVE_BEFORE_THE_FIRST = 3;

// Where a walk is and how it got there; the next step follows from this alone.
struct TraceState {
    PixelPoint at;
    int lastMove;
};

bool findFirstInsidePixel(const BitsView& mask, PixelPoint& point)
{
    for (int y = 0; y < mask.height; ++y) {
        const uint8_t* pixel = rowOf(mask, y);
        for (int x = 0; x < mask.width; ++x, pixel += 3) {
            if (pixel[0] | pixel[1] | pixel[2]) continue;
            point = PixelPoint{x, y};
            return true;
        }
    }
    return false;
}

static bool isInside(const BitsView& mask, PixelPoint at)
{
    if (at.x < 0 || at.y < 0 || at.x >= mask.width || at.y >= mask.height) return false;
    return rowOf(mask, at.y)[(ptrdiff_t)at.x * 3] == 0;
}

// Tests six moves after a straight move and seven after a diagonal one, up to half a turn back.
static bool step(const BitsView& mask, TraceState& state)
{
    const int last = state.lastMove, tests = last % 2 ? 6 : 7;
    const int first = (last + (last % 2 ? 7 : 6)) % 8;
    for (int n = 0; n < tests; ++n) {
        const int move = (first + n) % 8;
        const PixelPoint next = {state.at.x + moves[move].dx, state.at.y + moves[move].dy};
        if (!isInside(mask, next)) continue;
        state = TraceState{next, move};
        return true;
    }
    return false;
}

static bool samePoint(PixelPoint a, PixelPoint b)
{
    return a.x == b.x && a.y == b.y;
}

// Walks back to the start. A state that comes again means a round without the start: the walk is
// compared with an earlier state, which moves up each time the number of steps has doubled.
static TraceResult walk(const BitsView& mask, PixelPoint start, PixelPoint origin, PixelPoint*& points, int& count)
{
    TraceState state = {start, MOVE_BEFORE_THE_FIRST}, earlier = state;
    int64_t steps = 0, renewal = 1;
    do {
        if (!appendOutlinePoint(points, count, PixelPoint{origin.x + state.at.x, origin.y + state.at.y}))
            return TRACE_NO_MEMORY;
        if (steps > 0 && samePoint(state.at, start)) return TRACE_CLOSED;
        if (steps > 0 && samePoint(state.at, earlier.at) && state.lastMove == earlier.lastMove) return TRACE_ENDLESS;
        if (steps == renewal) {
            earlier = state;
            renewal *= 2;
        }
        steps++;
    } while (step(mask, state));
    return TRACE_DEAD_END;
}

TraceResult traceMask(const BitsView& mask, PixelPoint origin, PixelPoint*& points, int& count)
{
    points = nullptr;
    count = 0;
    PixelPoint start;
    if (!findFirstInsidePixel(mask, start)) return TRACE_EMPTY;
    const TraceResult result = walk(mask, start, origin, points, count);
    if (result == TRACE_CLOSED) return result;
    freeOutlinePoints(points);
    points = nullptr;
    count = 0;
    return result;
}
