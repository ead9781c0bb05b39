// The end of a selection, however it comes.
#pragma once

// Drops the selection, or the outline being drawn, and everything that belongs to it, and takes it off
// the screen. Pixels that were not applied are gone.
void clearSelection();
