// How a scroll bar of the dialogs answers a scroll message.
#pragma once

// Bounds and steps of a bar, both bounds included.
struct ScrollRange {
    int minimum, maximum;
    int line, page;
};

// The position after a scroll code (SB_LINEUP = 0, SB_LINEDOWN, SB_PAGEUP, SB_PAGEDOWN,
// SB_THUMBPOSITION, SB_THUMBTRACK = 5; any other code changes nothing), held inside the bounds.
// `thumb` is the thumb's position, signed 16 bits.
int scrolledPosition(int position, int code, int thumb, const ScrollRange& range);
