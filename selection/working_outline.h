// The outline that is drawn or reshaped, as the record's fields hold it.
#pragma once

#include "selection/geometry/outline.h"

// It as a value that the record goes on owning; put back with putOutline.
Outline workingOutline();
void putOutline(const Outline& outline);
Outline takeWorkingOutline();  // the record has none any more
