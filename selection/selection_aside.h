// A selection that a press of the outline brush has painted away altogether, kept until the button is up: the press
// may yet be taken back.
#pragma once

// As clearSelection, but what the selection owns is kept.
void setSelectionAside();

// The selection is the floating one again, as it was. False when none is kept.
bool takeSelectionBack();

void forgetSelectionAside();
