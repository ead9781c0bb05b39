// What a press on the canvas changes and may yet take back: canvas/pointer_input.h. What is owned here is kept until
// the release.
#pragma once

#include <windows.h>

#include <cstdint>

#include "session/ground/owned_selection.h"
#include "session/ground/session_record.h"
#include "session/ground/undo_step.h"

// Fields of the record as they were before the press.
struct PressStart {
    POINT strokePoint, strokePrevPoint, clickPoints[2];
    DirtyBox dirtyBox;
    COLORREF paintColour, previousColour;
    uint32_t reshapeFromOutside;
    RECT reshapeRect, reshapeHomeRect;
};

// What a step pushed at a press takes the place of. The steps behind it stay in the list's array, behind undoCount.
struct WaitingStep {
    bool waits;
    int position, count;  // as they were
    UndoStep replaced;    // owned; without a patch where none could be redone there
};

struct PatchAside {
    bool kept;
    HGLOBAL patch;  // owned; null where none had been picked up
};

struct SelectionAside {
    bool kept;
    OwnedSelection owned;
    RECT rect;
    int rotation;
};

struct PressState {
    PressStart start;
    bool takenBack;  // its button may still be down
    WaitingStep step;
    PatchAside patch;
    SelectionAside selection;
};
