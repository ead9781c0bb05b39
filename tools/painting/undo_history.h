// Undo and redo of painting strokes, any number of steps. A step keeps only the rectangle that its
// stroke could have changed; undo and redo swap it with the image, pixel by pixel in place. The patches are fixed
// blocks: however many steps there are, they take one movable handle, the list's.
#pragma once

#include <windows.h>

#include "session/ground/undo_step.h"

// Registers what the stroke may have changed, cut from undoSnapshot (the image at the press); drops every
// step that could have been redone. Returns 0 when the image cannot be read or memory is short.
int pushUndoStep(const RECT* rect);

// The same at a press that may yet be taken back: what could be redone is kept until one of the two below is called.
// Neither does anything when no such step waits.
int pushUndoStepAtPress(const RECT* rect);
void settleUndoStep();    // it stays
void takeBackUndoStep();  // the list is what it was

constexpr int UNDO = 1;
constexpr int REDO = 0;

// Returns 0 when there is no step at all, else 1.
int applyUndo(int direction);

// Frees all steps with their patches.
void freeUndoHistory();
