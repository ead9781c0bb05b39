#include "tools/kernels/digital_line.h"

static int64_t distance(int64_t step)
{
    return step < 0 ? -step : step;
}

static int direction(int64_t step)
{
    return (step > 0) - (step < 0);
}

DigitalLine beginLine(PixelPoint from, PixelPoint to)
{
    const int64_t stepX = (int64_t)to.x - from.x, stepY = (int64_t)to.y - from.y;
    const bool wide = distance(stepX) >= distance(stepY);
    const int64_t major = wide ? distance(stepX) : distance(stepY);
    const int64_t minor = wide ? distance(stepY) : distance(stepX);
    DigitalLine line = {};
    line.x = from.x;
    line.y = from.y;
    line.left = major;
    line.error = 2 * minor - major;
    line.straight = 2 * minor;
    line.diagonal = 2 * (minor - major);
    (wide ? line.majorX : line.minorX) = direction(stepX);
    (wide ? line.minorY : line.majorY) = direction(stepY);
    return line;
}
