// The patch of the image that Stamp or Spoonbill has picked up: the record's maskCache.
#pragma once

// Drops it, if there is one: the next dab picks up a new one.
void dropPickedPatch();

// The same at a press that may yet be taken back: the patch, or that there was none, is kept until one of the two
// below is called. Neither does anything when nothing is kept.
void setPickedPatchAside();
void forgetPatchAside();
void takePatchBack();
