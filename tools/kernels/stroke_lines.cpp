#include "tools/kernels/stroke_lines.h"

#include <algorithm>
#include <cstdlib>

#include "image/pixels/scarce_memory.h"

// Straight steps that a wide line makes before its next diagonal one.
static int64_t straightSteps(const DigitalLine& line)
{
    if (line.error >= 0) return 0;
    return line.straight == 0 ? line.left : (-line.error + line.straight - 1) / line.straight;
}

// After a diagonal step there are only two numbers of straight ones, of which this is the smaller.
static int64_t fewestStraightSteps(const DigitalLine& line)
{
    const int64_t major = (line.straight - line.diagonal) / 2, minor = line.straight / 2;
    return minor == 0 ? line.left : std::max<int64_t>(major / minor - 1, 0);
}

static LineSpan spanOf(int one, int other)
{
    return LineSpan{std::min(one, other), std::max(one, other)};
}

static int rowIndex(const StrokeLines& lines, int y)
{
    return y - lines.firstY;
}

static void fillWide(const StrokeLines& lines, DigitalLine line)
{
    const int64_t fewest = fewestStraightSteps(line);
    int64_t steps = straightSteps(line);
    uint8_t kind = 0;
    int index = rowIndex(lines, line.y);
    while (steps < line.left) {
        const int end = line.x + line.majorX * (int)steps;
        lines.spans[index] = spanOf(line.x, end);
        lines.kinds[index] = kind;
        line.left -= steps + 1;
        line.error += steps * line.straight + line.diagonal;
        line.x = end + line.majorX;
        index += line.minorY;
        kind = line.error + fewest * line.straight < 0;
        steps = fewest + kind;
    }
    lines.spans[index] = spanOf(line.x, line.x + line.majorX * (int)line.left);
    lines.kinds[index] = kind;
}

static void fillTall(const StrokeLines& lines, DigitalLine line)
{
    do
        lines.spans[rowIndex(lines, line.y)] = LineSpan{line.x, line.x};
    while (nextPoint(line));
    lines.kinds[0] = 0;
    for (int k = 1; k <= lines.lastY - lines.firstY; ++k)
        lines.kinds[k] = lines.spans[k].first != lines.spans[k - 1].first;
}

bool makeStrokeLines(StrokeLines* lines, DigitalLine line, PixelPoint end)
{
    *lines = {};
    lines->firstY = std::min(line.y, end.y);
    lines->lastY = std::max(line.y, end.y);
    const size_t count = (size_t)(lines->lastY - lines->firstY) + 1;
    lines->memory = takeMemory(count * (sizeof(LineSpan) + 1));
    if (!lines->memory) return false;
    lines->spans = (LineSpan*)lines->memory;
    lines->kinds = (uint8_t*)(lines->spans + count);
    const bool tall = line.majorX == 0 && line.left > 0;
    lines->mostPoints = tall ? 1 : (int)std::min<int64_t>(fewestStraightSteps(line) + 2, line.left + 1);
    if (tall)
        fillTall(*lines, line);
    else
        fillWide(*lines, line);
    return true;
}

void freeStrokeLines(StrokeLines* lines)
{
    free(lines->memory);
    *lines = {};
}
