#include "session/ground/scroll_step.h"

int scrolledPosition(int position, int code, int thumb, const ScrollRange& range)
{
    switch (code) {
    case 0: position -= range.line; break;
    case 1: position += range.line; break;
    case 2: position -= range.page; break;
    case 3: position += range.page; break;
    case 4:
    case 5: position = thumb; break;
    default: return position;
    }
    if (position < range.minimum) return range.minimum;
    return position > range.maximum ? range.maximum : position;
}
