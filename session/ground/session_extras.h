// What a session remembers besides its record, whose fields are fixed. One for each session, zeroed when its
// canvas is created, so that nothing of it outlives the record. It owns nothing.
#pragma once

#include <windows.h>

#include <cstdint>

// The brush's picture at the pointer. A brush may be larger on the screen than the canvas: its bitmap then holds
// only as much of it as can be seen at once.
struct OutlinePicture {
    SIZE whole;    // of the brush on the screen when the picture was made
    SIZE part;     // of the bitmaps: at most the client area of the host dialog
    POINT offset;  // what the bitmap shows now: its corner within the whole picture
};

// The lines of the coverage map that the stroke has reached, so that the next press clears no others.
struct CoveredLines {
    HGLOBAL map;
    int top, bottom;
};

// What the present brush mask was made for; a mask that fits is kept.
struct BrushMaskKey {
    HGLOBAL mask;
    int width, height;
    uint32_t shape;
};

struct SessionExtras {
    OutlinePicture outline;
    CoveredLines covered;
    BrushMaskKey brushMaskKey;
};

extern SessionExtras sessionExtras;
