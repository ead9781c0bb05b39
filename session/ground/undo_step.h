// A step of undo: tools/painting/undo_history.h.
#pragma once

#include <windows.h>

#include <cstdint>

struct UndoStep {
    uint32_t toolId;  // current tool when the step was pushed
    RECT rect;        // image pixels, clamped to the image
    // Packed bitmap: the other content of the rectangle, before the step while applied, after it while undone.
    HGLOBAL patch;
};
