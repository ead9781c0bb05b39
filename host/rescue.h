// Keeping the picture safe while it is edited: a second thread writes it to a file every minute, when it has
// changed.
#pragma once

#include <string>
#include <windows.h>

// image: as given to the library; it is only read, also while the library writes, so that a stroke that is being
// laid may be in the file in part.
void startRescue(HGLOBAL image);
void stopRescue();

// Writes the packed bitmap as a bitmap file, under another name first. patient: little by little, so that nobody
// notices. Nobody but the user may read the file.
bool writeRescueFile(const std::wstring& path, const void* packed, bool patient);
