// The patch of the image that Stamp or Spoonbill has picked up: the record's maskCache.
#pragma once

// Drops it, if there is one: the next dab picks up a new one.
void dropPickedPatch();
