// The host's image as it was when the session began, and the way back to it.
//
// Both blocks stay locked from the session's start to its end, and their addresses are known: giving back is a
// copy of bytes, which nothing that fails later can prevent.
#pragma once

#include <windows.h>

// Makes the session's originalImage. False, and nothing is kept or locked, when that or a lock fails.
bool keepOriginal(HGLOBAL image);

// Writes the original over the host's image; nothing when no original is kept. An image that the host has
// freed, cut short or replaced by another since is left alone.
void giveBackOriginal();

// Unlocks both and frees originalImage.
void releaseOriginal();
