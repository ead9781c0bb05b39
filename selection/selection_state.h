// The floating selection's states in the session record. All coordinates are image pixels.
//
// Three whole values (selection/floating_selection.h) are kept:
//   now  the selection as it is, its colours not adjusted
//   A    the selection before any turn; every turn starts from it with the accumulated angle
//   B    the selection at the last close, flip, turn or reshape; every resize starts from it
// so that nothing compounds. Shown are outlinePoints, selectionImage and selectionMask: made from `now`, the
// colours adjusted once, the points cut at the image's left and top side.
//
// Bitmaps that are the same are one block with several owners (image/kept_blocks.h), which nobody writes to.
#pragma once

#include <windows.h>

#include "color/values/colour_values.h"
#include "selection/floating_selection.h"

// A selection floats and no press of the outline brush is reshaping it: what an operation needs.
bool selectionFloats();

// The value; its parts stay the record's.
FloatingSelection selectionState(SelectionState state);

// The record takes the value and frees the one it had.
void putSelectionState(SelectionState state, const FloatingSelection& value);

// The selection's colour values. The record has fields for five of them.
ColourValues selectionColours();
void setSelectionColours(const ColourValues& values);

// What a change makes anew besides `now`.
enum RenewedStates { RENEW_A = 1, RENEW_B = 2 };

// `now` becomes the floating selection, with its frame, its shown points and images, and copies of it in the
// renewed states. Takes the value also when it fails. False when memory is short: then nothing has changed.
bool changeSelection(FloatingSelection& now, int renewed, int rotation);

// The shown image again from `now`, with the given colours. False, and nothing changed, when memory is short.
bool adjustShownImage(const ColourValues& values);

// All that the record owns of a selection.
OwnedSelection takeOwnedSelection();  // the record has none any more
void putOwnedSelection(const OwnedSelection& owned);
void freeOwnedSelection(OwnedSelection& owned);  // all zero again

// Frees the states and what is shown of them.
void dropSelectionStates();
