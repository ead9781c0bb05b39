// Selections in files: writing one, and reading it back with its thumbnail.
#pragma once

#include <windows.h>

#include "library/library_path.h"

// Writes image and mask (24-bit packed bitmaps of equal size) as a selection file. 1 when the whole file
// was written, else 0. The file appears under its name when it is complete, taking the place of an older
// one; a failure leaves an older file as it was and nothing new behind.
int writeSelectionTiff(const WCHAR* path, HGLOBAL image, HGLOBAL mask);

// The two halves of writeSelectionTiff, for a caller that has more to do before the file may appear.
// A written file that is not published is discarded.
bool writeUnpublished(const WCHAR* path, HGLOBAL image, HGLOBAL mask);
bool publishWritten(const WCHAR* path);
void discardWritten(const WCHAR* path);

// The file's thumbnail as a new 40 by 30 bitmap that belongs to the caller, or null.
HGLOBAL readSelectionThumbnail(const WCHAR* path);

// Loads pixels and mask as the session's selectionImage and selectionMask; those there before are freed.
// 1, or 0 with the session as it was.
int readSelectionTiff(const WCHAR* path);

// The two bitmaps of readSelectionTiff, which belong to the caller. False (and both null) on failure.
bool readSelectionBitmaps(const WCHAR* path, HGLOBAL* image, HGLOBAL* mask);
