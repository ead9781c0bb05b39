// The stored selections: numbered files in one directory beside the module, and a list file that holds the
// last number used. Numbers only count up; a deleted file leaves a gap and its line in the list.
#pragma once

#include <windows.h>

#include "library/library_path.h"

// Stores the session's floating selection (selectionImage, selectionMask) under the next number. 1 on
// success: lastSavedSelection then holds the new file's path (empty when its 256 bytes or the code page
// cannot hold it), and *saved, where given, holds it in any case. 0 leaves every file as it was.
int saveSelectionToLibrary(LibraryPath* saved = nullptr);

// Receives one stored selection; the thumbnail (40 by 30) belongs to the receiver from then on.
typedef void (*LibraryFileFound)(void* context, const LibraryPath& path, HGLOBAL thumbnail);

// Names every readable selection file in the order in which the system finds them. 0 when the directory
// does not exist or holds no "*.tif" file, else 1.
int listLibraryFiles(LibraryFileFound found, void* context);

// Removes the file; the list file is not touched. 1, or 0 when it could not be removed.
int deleteLibraryFile(const WCHAR* path);
